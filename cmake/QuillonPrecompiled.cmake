# SPDX-License-Identifier: MIT
# Headers of libraries that most sources include, read once for each kind of target: half of a build's time is parsing them.
# No header of the project is among them. The presets for Clang leave this out, so an include that is missing in a source, and
# that only these supply, is found there.
option(QUILLON_PRECOMPILED "Precompile the headers of libraries that most sources include" ON)

set(core_headers <algorithm> <array> <chrono> <cstdint> <filesystem> <functional> <map> <memory> <optional> <span> <string>
    <string_view> <unordered_map> <utility> <vector> <fmt/format.h> <tl/expected.hpp>)
set(window_headers ${core_headers} <QAction> <QApplication> <QBoxLayout> <QCheckBox> <QComboBox> <QGridLayout> <QGroupBox>
    <QHeaderView> <QKeyEvent> <QLabel> <QLineEdit> <QMainWindow> <QMenu> <QPainter> <QPushButton> <QScrollBar> <QString> <QStyle>
    <QTableView> <QTimer> <QWidget>)

# quillon_precompile(<target> <headers>...)
function(quillon_precompile target)
    if(QUILLON_PRECOMPILED)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()

# quillon_precompiled_by(<target> <other target>): it uses those of another one with the same flags.
function(quillon_precompiled_by target other)
    if(QUILLON_PRECOMPILED)
        target_precompile_headers(${target} REUSE_FROM ${other})
    endif()
endfunction()

// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

class QLabel;
class QLineEdit;

namespace quillon {

/// Tells in `remark`, while the boxes are typed in, which of their characters the 8-bit page lacks and so are stored as
/// "?". The label is empty and hidden while there are none. All must belong to one screen.
void tellLossOnPage(QLabel& remark, const std::vector<QLineEdit*>& boxes);

}  // namespace quillon

// SPDX-License-Identifier: MIT
// Any bytes as a settings file: every byte of the record is written back as it was, and the paths follow without harm.
#include "app/installation.h"
#include "input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillon;
    const std::string bytes = fuzz::bytesOf(data, size);
    Installation installation("/application");
    installation.settings = decodeSettings(bytes);
    std::string expected = bytes.substr(0, kSettingsBytes);
    expected.resize(kSettingsBytes, '\0');
    fuzz::require(encodeSettings(installation.settings) == expected, "a record survives");

    installation.refreshPathVariables();
    const Paths& paths = installation.paths();
    fuzz::require(!paths.fileListSeparator.empty(), "there is a separator");
    fuzz::require(installation.settings.alertSourcePort != 0 && installation.settings.alertListenPort != 0,
                  "ports have defaults");
    const PageText local = installation.settings.localPath.trimmed();
    fuzz::require(pageFromPath(pathFromPage(local)) == local, "a path of the page comes back");
    return 0;
}

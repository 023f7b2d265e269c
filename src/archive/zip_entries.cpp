// SPDX-License-Identifier: MIT
#include "archive/zip_entries.h"

#include <vector>

#include "archive/zip_handle.h"

namespace quillon {

Result<void> readEntries(const NativePath& archive,
                         const std::function<void(std::string_view name, std::string_view piece)>& take) {
    const auto zip = openZip(archive);
    if (!zip)
        return failure(zip.error());
    std::vector<char> buffer(std::size_t{1} << 18U);
    const zip_int64_t count = zip_get_num_entries(zip->get(), 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        const char* name = zip_get_name(zip->get(), index, 0);
        const ZipFileHandle file(zip_fopen_index(zip->get(), index, 0));
        if (!file || name == nullptr)
            return failure(zipError(archive, zip_get_error(zip->get())));
        zip_int64_t length = 0;
        while ((length = zip_fread(file.get(), buffer.data(), buffer.size())) > 0)
            take(name, {buffer.data(), static_cast<std::size_t>(length)});
        if (length < 0)
            return failure(zipError(archive, zip_file_get_error(file.get())));
    }
    return {};
}

}  // namespace quillon

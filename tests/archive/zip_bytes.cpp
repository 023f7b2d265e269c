// SPDX-License-Identifier: MIT
#include "archive/zip_bytes.h"

#include <zip.h>

#include <gtest/gtest.h>

#include "platform/whole_file.h"
#include "text/fields.h"

namespace quillon::test {

namespace {

void addEntry(zip_t* archive, const ZipEntry& entry, std::string_view password) {
    if (entry.folder) {
        ASSERT_GE(zip_dir_add(archive, entry.name.c_str(), ZIP_FL_ENC_UTF_8), 0);
        return;
    }
    zip_source_t* source = zip_source_buffer(archive, entry.bytes.data(), entry.bytes.size(), 0);
    const zip_int64_t index = zip_file_add(archive, entry.name.c_str(), source, ZIP_FL_ENC_UTF_8);
    ASSERT_GE(index, 0) << zip_strerror(archive);
    const auto at = static_cast<zip_uint64_t>(index);
    zip_file_set_external_attributes(archive, at, 0, ZIP_OPSYS_UNIX, static_cast<zip_uint32_t>(entry.mode) << 16U);
    if (!password.empty())
        zip_file_set_encryption(archive, at, ZIP_EM_AES_256, std::string(password).c_str());
}

}  // namespace

void writeZip(const NativePath& path, const std::vector<ZipEntry>& entries, std::string_view password) {
    int error = 0;
    zip_t* archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(archive, nullptr);
    for (const auto& entry : entries) addEntry(archive, entry, password);
    ASSERT_EQ(zip_close(archive), 0);
}

void writeZipRenamed(const NativePath& path, const std::vector<ZipEntry>& entries, std::string_view from,
                     std::string_view to) {
    ASSERT_EQ(from.size(), to.size());
    writeZip(path, entries);
    const auto bytes = readWholeFile(path);
    ASSERT_TRUE(bytes.has_value());
    ASSERT_TRUE(saveWholeFile(path, replacedAll(*bytes, from, to)).has_value());
}

}  // namespace quillon::test

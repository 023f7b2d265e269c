// SPDX-License-Identifier: MIT
#include "archive/zip_writer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>

#include <fmt/format.h>

#include "archive/zip_handle.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

bool isUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        if (!nextUtf8(text, i))
            return false;
    }
    return true;
}

// To programs that unpack the archive a "\" is the end of a folder's name, and a control character makes no name at
// all.
std::string storedName(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F || c == '\\'; }, '_');
    return name;
}

// A quarter of the time of the highest level for a file list, and hardly larger.
constexpr zip_uint32_t kLevel = 6;

// What of all bytes is done, in percent. libzip gives every file an equal part of the whole, however large it is.
double percentDone(const std::vector<std::uint64_t>& sizes, double fraction) {
    const double place = std::clamp(fraction, 0.0, 1.0) * static_cast<double>(sizes.size());
    const auto inWork = std::min(static_cast<std::size_t>(place), sizes.size() - 1);
    const auto sum = [](auto first, auto last) { return static_cast<double>(std::accumulate(first, last, 0ULL)); };
    const auto at = sizes.begin() + static_cast<std::ptrdiff_t>(inWork);
    const double all = sum(sizes.begin(), sizes.end());
    const double done =
        sum(sizes.begin(), at) + (place - static_cast<double>(inWork)) * static_cast<double>(sizes[inWork]);
    return all > 0 ? 100 * done / all : 100 * fraction;
}

Result<void> checkReadable(const NativePath& file) {
    if (!pathExists(file))
        return failure(ErrorKind::NotFound, readable(file.native()) + ": no such file");
    if (!isRegularFile(file))
        return failure(ErrorKind::PermissionDenied, readable(file.native()) + ": not a regular file");
    return File::openForReading(file).and_then([](File opened) { return opened.close(); });
}

// True when the rest of the entry and the rest of the file are the same bytes.
bool sameBytes(zip_file_t* entry, File& file, const ZipOptions& options) {
    std::array<char, 65536> packed;
    std::array<char, 65536> plain;
    while (true) {
        const zip_int64_t count = zip_fread(entry, packed.data(), packed.size());
        if (count < 0)
            return false;
        const auto wanted = static_cast<std::size_t>(count);
        const auto got = file.read(std::as_writable_bytes(std::span(plain.data(), wanted == 0 ? 1 : wanted)));
        if (!got || *got != wanted || std::memcmp(packed.data(), plain.data(), wanted) != 0)
            return false;
        if (wanted == 0)
            return true;
        if (options.loop != nullptr)
            options.loop->turn();
    }
}

// The entries of a finished archive stand in the order in which they were added.
bool isEqual(zip_t* archive, zip_uint64_t index, const ZipInput& input, const ZipOptions& options) {
    const char* name = zip_get_name(archive, index, ZIP_FL_ENC_RAW);
    if (name == nullptr || input.name != name)
        return false;
    const char* password = options.password ? options.password->c_str() : nullptr;
    const ZipFileHandle entry(zip_fopen_index_encrypted(archive, index, 0, password));
    if (!entry)
        return false;
    auto file = File::openForReading(input.file);
    return file && sameBytes(entry.get(), *file, options);
}

}  // namespace

struct ZipWriter::Open {
    ZipHandle handle;
};

// What libzip calls while it writes.
struct ZipWriter::Watch {
    const ZipOptions& options;
    const std::vector<std::uint64_t>& sizes;

    static void onProgress(zip_t* /*archive*/, double fraction, void* state) {
        const Watch& watch = *static_cast<const Watch*>(state);
        if (watch.options.progress)
            watch.options.progress(percentDone(watch.sizes, fraction));
        if (watch.options.loop != nullptr)
            watch.options.loop->turn();
    }
    // Every few kilobytes that it writes: a place for turns of the event loop.
    static int onPoll(zip_t* /*archive*/, void* state) {
        const Watch& watch = *static_cast<const Watch*>(state);
        if (watch.options.loop != nullptr)
            watch.options.loop->turn();
        return watch.options.cancelled && watch.options.cancelled() ? 1 : 0;
    }
};

ZipWriter::ZipWriter(NativePath archive, ZipOptions options)
    : archive_(std::move(archive)), options_(std::move(options)) {
}

ZipWriter::~ZipWriter() {
    open_.reset();
    if (!temporary_.empty() && pathExists(temporary_))
        passOver(removeFile(temporary_), "a name of a save in progress, which no listing gives");
}

Result<void> ZipWriter::openTemporary() {
    if (open_)
        return {};
    temporary_ = archive_.parent_path() / temporaryName();
    int code = 0;
    ZipHandle handle(zip_open(temporary_.c_str(), ZIP_CREATE | ZIP_EXCL, &code));
    if (!handle) {
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        auto failed = zipError(archive_, &error);
        zip_error_fini(&error);
        return failure(std::move(failed));
    }
    open_ = std::make_unique<Open>();
    open_->handle = std::move(handle);
    return {};
}

std::string ZipWriter::freeName(const std::string& name) const {
    std::string free = name;
    for (int i = 2; names_.contains(free); ++i) {
        const NativePath path(name);
        free = name.substr(0, name.size() - path.extension().native().size()) + fmt::format(" ({})", i) +
               path.extension().native();
    }
    return free;
}

Result<void> ZipWriter::add(const NativePath& file, const std::string& name) {
    if (auto checked = checkReadable(file); !checked)
        return checked;
    if (auto opened = openTemporary(); !opened)
        return opened;
    zip_t* zip = open_->handle.get();
    zip_source_t* source = zip_source_file(zip, file.c_str(), 0, -1);
    if (source == nullptr)
        return failure(zipError(file, zip_get_error(zip)));
    const std::string free = freeName(storedName(name));
    const zip_int64_t index = zip_file_add(zip, free.c_str(), source, isUtf8(free) ? ZIP_FL_ENC_UTF_8 : ZIP_FL_ENC_RAW);
    if (index < 0) {
        zip_source_free(source);
        return failure(zipError(file, zip_get_error(zip)));
    }
    if (options_.password && zip_file_set_encryption(zip, static_cast<zip_uint64_t>(index), ZIP_EM_AES_256,
                                                     options_.password->c_str()) != 0) {
        auto failed = zipError(file, zip_get_error(zip));
        zip_delete(zip, static_cast<zip_uint64_t>(index));
        return failure(std::move(failed));
    }
    passOver(zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), ZIP_CM_DEFLATE, kLevel),
             "the level that libzip takes by itself is slower and no failure");
    names_.insert(free);
    inputs_.push_back({file, free});
    sizes_.push_back(fileSize(file).value_or(0));
    return {};
}

Result<void> ZipWriter::writeTemporary() {
    zip_t* zip = open_->handle.get();
    Watch watch{options_, sizes_};
    zip_register_progress_callback_with_state(zip, 0.001, &Watch::onProgress, nullptr, &watch);
    zip_register_cancel_callback_with_state(zip, &Watch::onPoll, nullptr, &watch);
    if (zip_close(zip) != 0)
        return failure(zipError(archive_, zip_get_error(zip)));
    [[maybe_unused]] const zip_t* freed = open_->handle.release();  // by the close
    if (options_.progress)
        options_.progress(100);  // libzip leaves out a last step that is below its precision
    const auto synced = File::openForAppending(temporary_).and_then([](File file) {
        return file.sync().and_then([&file] { return file.close(); });
    });
    if (!synced)
        return failure(saveError(archive_, synced.error()));
    return {};
}

Result<void> ZipWriter::putInPlace() {
    if (options_.kept != nullptr && pathExists(archive_)) {
        if (const auto kept = options_.kept->copyAway(archive_); !kept)
            return failure(kept.error());
    }
    if (const auto renamed = renameFile(temporary_, archive_); !renamed)
        return failure(saveError(archive_, renamed.error()));
    syncFolder(archive_.parent_path());
    return {};
}

Result<void> ZipWriter::finish() {
    if (!open_ || inputs_.empty())
        return {};
    auto written = writeTemporary();
    open_.reset();
    return written.and_then([this] { return putInPlace(); });
}

std::vector<bool> equalToFiles(const NativePath& archive, const std::vector<ZipInput>& inputs,
                               const ZipOptions& options) {
    std::vector<bool> equal(inputs.size(), false);
    const auto handle = openZip(archive);
    if (!handle)
        return equal;
    for (std::size_t i = 0; i < inputs.size(); ++i) equal[i] = isEqual(handle->get(), i, inputs[i], options);
    return equal;
}

}  // namespace quillon

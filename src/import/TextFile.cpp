#include "import/TextFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

#include "core/TextNormalise.h"

namespace importers {

namespace {

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};

std::size_t findFrom(const char* data, std::size_t size, std::size_t from, char c) {
    if (from >= size) return size;
    const void* p = std::memchr(data + from, c, size - from);
    return p ? static_cast<std::size_t>(static_cast<const char*>(p) - data) : size;
}

}  // namespace

LineWalker::LineWalker(std::string_view text) : text_(text) {
    nextCr_ = findFrom(text_.data(), text_.size(), 0, '\r');
    nextLf_ = findFrom(text_.data(), text_.size(), 0, '\n');
}

bool LineWalker::next(std::string_view& line) {
    const std::size_t size = text_.size();
    if (pos_ >= size) return false;
    const char* d = text_.data();
    if (nextCr_ < pos_) nextCr_ = findFrom(d, size, pos_, '\r');
    if (nextLf_ < pos_) nextLf_ = findFrom(d, size, pos_, '\n');
    const std::size_t end = std::min(nextCr_, nextLf_);
    line = std::string_view(d + pos_, end - pos_);
    if (end == size)
        pos_ = size;
    else if (d[end] == '\r' && end + 1 < size && d[end + 1] == '\n')
        pos_ = end + 2;
    else
        pos_ = end + 1;
    return true;
}

bool TextFile::load(const std::string& path) {
    release();
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
    std::unique_ptr<std::FILE, FileCloser> f(std::fopen(path.c_str(), "rb"));
    if (!f) return false;
    std::size_t capacity = static_cast<std::size_t>(st.st_size);
    std::unique_ptr<char[]> data(new (std::nothrow) char[capacity + 1]);
    if (!data) return false;
    std::size_t got = 0;
    for (;;) {
        got += std::fread(data.get() + got, 1, capacity + 1 - got, f.get());
        if (got <= capacity) break;
        // The file grew while it was read: take the rest as well.
        const std::size_t bigger = capacity * 2 + 4096;
        std::unique_ptr<char[]> more(new (std::nothrow) char[bigger + 1]);
        if (!more) return false;
        std::memcpy(more.get(), data.get(), got);
        data = std::move(more);
        capacity = bigger;
    }
    if (std::ferror(f.get())) return false;
    data_ = std::move(data);
    size_ = got;
    start();
    return true;
}

void TextFile::assign(std::string_view text) {
    release();
    data_.reset(new char[text.size() + 1]);
    std::memcpy(data_.get(), text.data(), text.size());
    size_ = text.size();
    start();
}

void TextFile::start() {
    std::size_t from = 0;
    if (size_ >= 3 && static_cast<unsigned char>(data_[0]) == 0xEF &&
        static_cast<unsigned char>(data_[1]) == 0xBB &&
        static_cast<unsigned char>(data_[2]) == 0xBF)
        from = 3;
    text_ = std::string_view(data_.get() + from, size_ - from);
    lines_ = LineWalker(text_);
}

std::size_t TextFile::lineCountHint() const {
    if (text_.empty()) return 0;
    // From the line length at the start of the text, with a little to spare: a
    // count over the whole text would cost as much as reading it.
    constexpr std::size_t kSample = 1 << 16;
    const std::size_t left = text_.size();
    const char* b = text_.data();
    const std::size_t sample = std::min(left, kSample);
    const auto cr = static_cast<std::size_t>(std::count(b, b + sample, '\r'));
    const auto lf = static_cast<std::size_t>(std::count(b, b + sample, '\n'));
    const std::size_t ends = std::max<std::size_t>(std::max(cr, lf), 1);
    if (sample == left) return ends + 1;
    return left / sample * ends + left % sample * ends / sample + left / sample * ends / 16 + 1;
}

void TextFile::release() {
    data_.reset();
    size_ = 0;
    text_ = {};
    lines_ = LineWalker();
}

std::vector<std::string_view> textBlocks(std::string_view text, std::size_t bytes) {
    std::vector<std::string_view> blocks;
    const std::size_t size = text.size();
    const char* d = text.data();
    if (bytes == 0) bytes = 1;
    std::size_t from = 0;
    while (from < size) {
        std::size_t cut = size;
        if (size - from > bytes) {
            const std::size_t at = from + bytes;
            cut = findFrom(d, size, at, '\n');
            if (cut < size) {
                ++cut;
            } else {
                // No LF from here on: cut after a CR (none of them has an LF after it).
                cut = findFrom(d, size, at, '\r');
                cut = cut < size ? cut + 1 : size;
            }
        }
        blocks.emplace_back(d + from, cut - from);
        from = cut;
    }
    return blocks;
}

// A line whose separators all stand alone normalises to itself with a tab for
// each: its fields are cut from the line as it is, with no copy. False (and no
// fields) when two separators meet.
bool FieldSplitter::splitLoneSeparators(std::string_view line, std::size_t keep) {
    const char* d = line.data();
    const std::size_t n = line.size();
    std::size_t from = 0;
    bool afterSeparator = false;
    count_ = 1;
    for (std::size_t i = 0; i < n; ++i) {
        const char c = d[i];
        if (c != ' ' && c != ',' && c != '\t') {
            afterSeparator = false;
            continue;
        }
        if (afterSeparator) {
            fields_.clear();
            return false;
        }
        afterSeparator = true;
        if (fields_.size() < keep) fields_.emplace_back(d + from, i - from);
        from = i + 1;
        ++count_;
    }
    if (fields_.size() < keep) fields_.emplace_back(d + from, n - from);
    return true;
}

const std::vector<std::string_view>& FieldSplitter::split(std::string_view line, std::size_t keep) {
    fields_.clear();
    if (rounds_ > 0 && splitLoneSeparators(line, keep)) return fields_;
    core::P_subNormaliseSeparators(line, rounds_, normalised_);
    const char* d = normalised_.data();
    const std::size_t n = normalised_.size();
    std::size_t from = 0;
    count_ = 1;
    for (;;) {
        const void* tab = from < n ? std::memchr(d + from, '\t', n - from) : nullptr;
        if (!tab) break;
        const auto at = static_cast<std::size_t>(static_cast<const char*>(tab) - d);
        if (fields_.size() < keep) fields_.emplace_back(d + from, at - from);
        from = at + 1;
        ++count_;
    }
    if (fields_.size() < keep) fields_.emplace_back(d + from, n - from);
    return fields_;
}

}  // namespace importers

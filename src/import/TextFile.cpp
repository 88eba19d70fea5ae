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
    pos_ = 0;
    if (size_ >= 3 && static_cast<unsigned char>(data_[0]) == 0xEF &&
        static_cast<unsigned char>(data_[1]) == 0xBB && static_cast<unsigned char>(data_[2]) == 0xBF)
        pos_ = 3;
    nextCr_ = findFrom(data_.get(), size_, pos_, '\r');
    nextLf_ = findFrom(data_.get(), size_, pos_, '\n');
}

bool TextFile::nextLine(std::string_view& line) {
    if (pos_ >= size_) return false;
    const char* d = data_.get();
    // Each search runs once over the text: a file with lone CRs is not searched
    // for LFs again on every line.
    if (nextCr_ < pos_) nextCr_ = findFrom(d, size_, pos_, '\r');
    if (nextLf_ < pos_) nextLf_ = findFrom(d, size_, pos_, '\n');
    const std::size_t end = std::min(nextCr_, nextLf_);
    line = std::string_view(d + pos_, end - pos_);
    if (end == size_)
        pos_ = size_;
    else if (d[end] == '\r' && end + 1 < size_ && d[end + 1] == '\n')
        pos_ = end + 2;
    else
        pos_ = end + 1;
    return true;
}

std::size_t TextFile::lineCountHint() const {
    if (pos_ >= size_) return 0;
    const char* b = data_.get() + pos_;
    const char* e = data_.get() + size_;
    const auto cr = static_cast<std::size_t>(std::count(b, e, '\r'));
    const auto lf = static_cast<std::size_t>(std::count(b, e, '\n'));
    return std::max(cr, lf) + 1;
}

void TextFile::release() {
    data_.reset();
    size_ = 0;
    pos_ = 0;
    nextCr_ = nextLf_ = 0;
}

const std::vector<std::string_view>& FieldSplitter::split(std::string_view line) {
    core::P_subNormaliseSeparators(line, rounds_, normalised_);
    fields_.clear();
    const char* d = normalised_.data();
    const std::size_t n = normalised_.size();
    std::size_t from = 0;
    for (;;) {
        const void* tab = n > from ? std::memchr(d + from, '\t', n - from) : nullptr;
        if (!tab) {
            fields_.emplace_back(d + from, n - from);
            break;
        }
        const auto at = static_cast<std::size_t>(static_cast<const char*>(tab) - d);
        fields_.emplace_back(d + from, at - from);
        from = at + 1;
    }
    return fields_;
}

}  // namespace importers

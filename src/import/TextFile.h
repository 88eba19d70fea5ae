#pragma once
// A text file read in one go and walked line by line, and the fields of a line
// after the separator normaliser. Lines end at CR LF, LF or a lone CR; the end of
// the last line is optional. A UTF-8 byte-order mark at the start is not text.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace importers {

class TextFile {
public:
    // Reads the whole file; false when it cannot be read (no file, a folder, an
    // error while reading, not enough memory).
    bool load(const std::string& path);
    // The text as it is, for tests and harnesses that read from memory.
    void assign(std::string_view text);

    // The next line without its end; false after the last line.
    bool nextLine(std::string_view& line);
    // The lines left to read, to size the readers' arrays: exact for a text with one
    // kind of line end, too few for one that mixes them.
    std::size_t lineCountHint() const;
    // Lets go of the text (the readers build from their arrays).
    void release();

private:
    void start();

    std::unique_ptr<char[]> data_;
    std::size_t size_ = 0;
    std::size_t pos_ = 0;
    // The next CR and LF at or after pos_ (size_ for none), found once each.
    std::size_t nextCr_ = 0, nextLf_ = 0;
};

// Normalises a line's separators (blanks, commas and tabs, `rounds` rounds) and
// splits it on tab. The fields stay valid until the next split.
class FieldSplitter {
public:
    explicit FieldSplitter(int rounds) : rounds_(rounds) {}
    const std::vector<std::string_view>& split(std::string_view line);

private:
    int rounds_;
    std::string normalised_;
    std::vector<std::string_view> fields_;
};

}  // namespace importers

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

// Walks a text line by line.
class LineWalker {
public:
    LineWalker() = default;
    explicit LineWalker(std::string_view text);
    // The next line without its end; false after the last line.
    bool next(std::string_view& line);

private:
    std::string_view text_;
    std::size_t pos_ = 0;
    // The next CR and LF at or after pos_ (the text's size for none), each found
    // once, so that a text of lone CRs is not searched for LFs on every line.
    std::size_t nextCr_ = 0, nextLf_ = 0;
};

class TextFile {
public:
    // Reads the whole file; false when it cannot be read (no file, a folder, an
    // error while reading, not enough memory).
    bool load(const std::string& path);
    // The text as it is, for tests and harnesses that read from memory.
    void assign(std::string_view text);

    // The text after the byte-order mark.
    std::string_view text() const { return text_; }
    // The next line without its end; false after the last line.
    bool nextLine(std::string_view& line) { return lines_.next(line); }
    // About the lines of the text, to size the readers' arrays: from the line
    // length of the first 64 KB (exact for a shorter text with one kind of line end).
    std::size_t lineCountHint() const;
    // Lets go of the text (the readers build from their arrays).
    void release();

private:
    void start();

    std::unique_ptr<char[]> data_;
    std::size_t size_ = 0;
    std::string_view text_;
    LineWalker lines_;
};

// The text cut into pieces of about `bytes` each, every piece ending where a line
// ends (after an LF, or after a CR that no LF follows), so that the lines of the
// pieces in order are the lines of the text.
std::vector<std::string_view> textBlocks(std::string_view text, std::size_t bytes);

// Normalises a line's separators (blanks, commas and tabs, `rounds` rounds) and
// splits it on tab. Only the first `keep` fields are kept (a line of a million
// fields costs no million views); count() tells how many there are. The fields
// stay valid until the next split and while the line's text lives (they may
// point into it).
class FieldSplitter {
public:
    explicit FieldSplitter(int rounds) : rounds_(rounds) {}
    const std::vector<std::string_view>& split(std::string_view line,
                                               std::size_t keep = static_cast<std::size_t>(-1));
    std::size_t count() const { return count_; }

private:
    bool splitLoneSeparators(std::string_view line, std::size_t keep);

    int rounds_;
    std::string normalised_;
    std::vector<std::string_view> fields_;
    std::size_t count_ = 0;
};

}  // namespace importers

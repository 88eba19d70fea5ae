// World files on disk: choosing the format, reading with a check before the
// scene is touched, and saving through a temporary file that replaces the old
// one only when it is complete on the disk.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <map>
#include <set>
#include <system_error>

#include "engine/WorldCodec.h"
#include "engine/WorldFormat.h"
#include "engine/WorldIO.h"

namespace engine {

namespace fs = std::filesystem;
using world::WorldBuilder;
using world::WorldSource;

namespace world {

Detected detectFormat(std::string_view first) {
    if (first.size() >= sizeof kStateMagic &&
        std::memcmp(first.data(), kStateMagic, sizeof kStateMagic) == 0)
        return Detected::State;
    const std::string_view text(kTextMagic);
    if (first.substr(0, text.size()) == text) return Detected::Text;
    return Detected::Foreign;
}

std::string foreignMessage() { return "The file is not a Tarvik world file"; }

std::string newerMessage(std::uint64_t version, std::uint32_t known) {
    return "The world file is of format " + std::to_string(version) +
           ", newer than this program reads (format " + std::to_string(known) + ")";
}

}  // namespace world

namespace {

std::string errnoText(int err) { return std::generic_category().message(err); }

// ---- files as byte streams ------------------------------------------------------------

class FileSource : public world::ByteSource {
public:
    ~FileSource() override {
        if (fd_ >= 0) ::close(fd_);
    }
    // False with a message when the file cannot be opened or is not a plain file.
    bool open(const fs::path& file, std::string& why) {
        fd_ = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd_ < 0) {
            why = "The world file cannot be opened: " + errnoText(errno);
            return false;
        }
        struct stat st {};
        if (::fstat(fd_, &st) != 0 || !S_ISREG(st.st_mode)) {
            why = "The world file is not a plain file";
            return false;
        }
        size_ = std::uint64_t(st.st_size);
        // The whole file is wanted, front to back: let the system read ahead
        // while the scene is being built.
        ::posix_fadvise(fd_, 0, 0, POSIX_FADV_SEQUENTIAL);
        ::posix_fadvise(fd_, 0, 0, POSIX_FADV_WILLNEED);
        return true;
    }
    std::size_t read(void* data, std::size_t size) override {
        auto* p = static_cast<char*>(data);
        std::size_t done = 0;
        while (done < size) {
            const ssize_t n = ::read(fd_, p + done, std::min<std::size_t>(size - done, 1 << 30));
            if (n < 0 && errno == EINTR) continue;
            if (n < 0) {
                failure_ = "The world file cannot be read: " + errnoText(errno);
                break;
            }
            if (n == 0) break;
            done += std::size_t(n);
        }
        return done;
    }
    std::uint64_t size() const override { return size_; }
    std::string failure() const override { return failure_; }
    std::string head(std::size_t n) const {
        std::string s(n, '\0');
        const ssize_t got = ::pread(fd_, s.data(), n, 0);
        s.resize(got > 0 ? std::size_t(got) : 0);
        return s;
    }

private:
    int fd_ = -1;
    std::uint64_t size_ = 0;
    std::string failure_;
};

class FileSink : public world::ByteSink {
public:
    explicit FileSink(int fd) : fd_(fd) { buf_.reserve(kBuffer); }
    bool write(const void* data, std::size_t size) override {
        if (!ok_) return false;
        const auto* p = static_cast<const char*>(data);
        // Large blocks (the coordinates) go out as they are, without a copy.
        if (size >= kBuffer / 4) return flush() && put(p, size);
        if (buf_.size() + size > kBuffer && !flush()) return false;
        buf_.insert(buf_.end(), p, p + size);
        return true;
    }
    bool flush() {
        if (!ok_) return false;
        const bool done = put(buf_.data(), buf_.size());
        buf_.clear();
        return done;
    }
    int error() const { return err_; }

private:
    static constexpr std::size_t kBuffer = std::size_t(1) << 20;
    bool put(const char* p, std::size_t n) {
        while (n > 0) {
            const ssize_t w = ::write(fd_, p, std::min<std::size_t>(n, 1 << 30));
            if (w < 0 && errno == EINTR) continue;
            if (w <= 0) {
                err_ = w < 0 ? errno : ENOSPC;
                ok_ = false;
                return false;
            }
            p += w;
            n -= std::size_t(w);
        }
        return true;
    }
    int fd_;
    std::vector<char> buf_;
    bool ok_ = true;
    int err_ = 0;
};

// ---- reading ------------------------------------------------------------------------------

bool decode(world::ByteSource& in, std::string_view head, WorldBuilder& b) {
    if (in.size() == 0) {
        b.error = "The file is empty";
        return false;
    }
    switch (world::detectFormat(head)) {
        case world::Detected::State:
            return world::readState(in, b);
        case world::Detected::Text:
            return world::readText(in, b);
        case world::Detected::Foreign:
            break;
    }
    b.error = world::foreignMessage();
    return false;
}

constexpr std::size_t kHead = 32;

WorldResult readFile(const fs::path& file, WorldBuilder& b) {
    WorldResult r;
    FileSource src;
    std::string why;
    if (!src.open(file, why)) {
        r.message = why + " (" + file.string() + ")";
        return r;
    }
    if (!decode(src, src.head(kHead), b)) {
        r.message = b.error + " (" + file.string() + ")";
        return r;
    }
    r.ok = true;
    r.polygons = std::size_t(b.polygonsAdded());
    return r;
}

fs::path folderOf(const fs::path& file) {
    fs::path dir = file.parent_path();
    return dir.empty() ? fs::path(".") : dir;
}

// ---- saving ---------------------------------------------------------------------------------

// Copies the bitmaps into dir/Bitmaps and points the references there.
void copyBitmaps(WorldSource& src, const fs::path& dir, std::vector<std::string>& notes) {
    if (src.tables.bitmaps.empty()) return;
    const fs::path folder = dir / "Bitmaps";
    std::error_code ec;
    fs::create_directories(folder, ec);
    if (ec) {
        notes.push_back("The folder for the bitmaps cannot be made: " + folder.string());
        return;
    }
    std::map<std::string, std::string> taken;  // file name in the folder -> its source
    for (std::size_t i = 0; i < src.tables.bitmaps.size(); ++i) {
        const fs::path from(src.bitmapFiles[i]);
        std::string name = from.filename().string();
        const std::string stem = from.stem().string(), ext = from.extension().string();
        for (int k = 2; taken.count(name) && taken[name] != from.string(); ++k)
            name = stem + "_" + std::to_string(k) + ext;
        taken[name] = from.string();
        const fs::path to = folder / name;
        if (!fs::equivalent(from, to, ec)) {
            ec.clear();
            fs::copy_file(from, to, fs::copy_options::overwrite_existing, ec);
            if (ec) {
                notes.push_back("Bitmap not copied: " + from.string());
                continue;
            }
        }
        src.tables.bitmaps[i] = "Bitmaps/" + name;
    }
}

mode_t newFileMode(const fs::path& file) {
    struct stat st {};
    if (::stat(file.c_str(), &st) == 0) return st.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

WorldResult writeFile(WorldSource& src, const fs::path& file, const WorldSaveOptions& opt) {
    WorldResult r;
    const fs::path dir = folderOf(file);
    if (opt.bitmaps) copyBitmaps(src, dir, r.notes);
    const WorldFormat format = opt.format ? *opt.format : worldFormatFor(file);

    std::string tmpl = (dir / ("." + file.filename().string() + ".XXXXXX")).string();
    const int fd = ::mkstemp(tmpl.data());
    if (fd < 0) {
        r.message =
            "The world file cannot be written: " + errnoText(errno) + " (" + file.string() + ")";
        return r;
    }
    const fs::path tmp(tmpl);
    FileSink sink(fd);
    std::string error;
    bool ok = format == WorldFormat::Text ? world::writeText(src, sink, error)
                                          : world::writeState(src, sink, error);
    ok = sink.flush() && ok;
    int err = sink.error();
    if (ok && ::fchmod(fd, newFileMode(file)) != 0) {
        ok = false;
        err = errno;
    }
    if (ok && ::fsync(fd) != 0) {
        ok = false;
        err = errno;
    }
    if (::close(fd) != 0 && ok) {
        ok = false;
        err = errno;
    }
    if (ok && ::rename(tmp.c_str(), file.c_str()) != 0) {
        ok = false;
        err = errno;
    }
    if (!ok) {
        ::unlink(tmp.c_str());
        r.message = "The world file cannot be written: " + (err ? errnoText(err) : error) + " (" +
                    file.string() + ")";
        return r;
    }
    // The rename itself reaches the disk with the folder.
    const int dfd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dfd >= 0) {
        ::fsync(dfd);
        ::close(dfd);
    }
    r.ok = true;
    r.polygons = src.polygonCount();
    return r;
}

}  // namespace

WorldFormat worldFormatFor(const fs::path& file) {
    std::string ext = file.extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return ext == ".wld" ? WorldFormat::Text : WorldFormat::State;
}

WorldResult loadWorld(Engine& e, const fs::path& file, const fs::path& bitmapDir) {
    WorldBuilder b;
    WorldResult r = readFile(file, b);
    if (!r.ok) return r;
    WorldIO::commitReplace(e, b, WorldIO::Placement{folderOf(file), bitmapDir, &r.notes});
    return r;
}

WorldResult addWorld(Engine& e, const fs::path& file, const fs::path& bitmapDir, Point3 offset,
                     std::string_view groupName) {
    WorldBuilder b;
    WorldResult r = readFile(file, b);
    if (!r.ok) return r;
    if (!offset.finite()) {
        r.ok = false;
        r.message = "The place for the added world is not a number";
        return r;
    }
    r.group = WorldIO::commitAdd(e, b, WorldIO::Placement{folderOf(file), bitmapDir, &r.notes},
                                 offset, groupName);
    if (!r.group) {
        r.ok = false;
        r.message = "The scene has no room for another group";
    }
    return r;
}

WorldResult saveWorld(const Engine& e, const fs::path& file, const WorldSaveOptions& options) {
    WorldResult r;
    WorldSource src;
    std::string error;
    if (!src.capture(e, options.group, error)) {
        r.message = error;
        return r;
    }
    return writeFile(src, file, options);
}

WorldResult loadWorldBytes(Engine& e, std::string_view bytes, const fs::path& baseDir) {
    WorldResult r;
    WorldBuilder b;
    world::MemorySource src(bytes);
    if (!decode(src, bytes.substr(0, kHead), b)) {
        r.message = b.error;
        return r;
    }
    r.ok = true;
    r.polygons = std::size_t(b.polygonsAdded());
    WorldIO::commitReplace(e, b, WorldIO::Placement{baseDir, {}, &r.notes});
    return r;
}

WorldResult addWorldBytes(Engine& e, std::string_view bytes, const fs::path& baseDir, Point3 offset,
                          std::string_view groupName) {
    WorldResult r;
    WorldBuilder b;
    world::MemorySource src(bytes);
    if (!decode(src, bytes.substr(0, kHead), b)) {
        r.message = b.error;
        return r;
    }
    if (!offset.finite()) {
        r.message = "The place for the added world is not a number";
        return r;
    }
    r.polygons = std::size_t(b.polygonsAdded());
    r.group =
        WorldIO::commitAdd(e, b, WorldIO::Placement{baseDir, {}, &r.notes}, offset, groupName);
    r.ok = r.group != 0;
    if (!r.ok) r.message = "The scene has no room for another group";
    return r;
}

WorldResult encodeWorld(const Engine& e, WorldFormat format, std::string& out, Handle group) {
    WorldResult r;
    WorldSource src;
    std::string error;
    if (!src.capture(e, group, error)) {
        r.message = error;
        return r;
    }
    out.clear();
    world::StringSink sink(out);
    const bool ok = format == WorldFormat::Text ? world::writeText(src, sink, error)
                                                : world::writeState(src, sink, error);
    if (!ok) {
        r.message = error;
        return r;
    }
    r.ok = true;
    r.polygons = src.polygonCount();
    return r;
}

bool isWorldFile(const fs::path& file) {
    FileSource src;
    std::string why;
    return src.open(file, why) && world::detectFormat(src.head(kHead)) != world::Detected::Foreign;
}

}  // namespace engine

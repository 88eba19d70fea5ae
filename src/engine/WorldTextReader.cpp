// Reading the ".WLD" text world format (see WorldTextWriter.cpp for its shape).
// A section's lines are checked against its checksum before any is parsed.

#include <charconv>
#include <cstring>
#include <memory>

#include "engine/WorldChecksum.h"
#include "engine/WorldCodec.h"

namespace engine::world {

namespace {

struct Token {
    std::string text;
    bool quoted = false;
};

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool tokenize(std::string_view line, std::vector<Token>& out) {
    out.clear();
    std::size_t i = 0;
    while (i < line.size()) {
        if (line[i] == ' ') {
            ++i;
            continue;
        }
        Token t;
        if (line[i] == '"') {
            t.quoted = true;
            ++i;
            bool closed = false;
            while (i < line.size()) {
                const char c = line[i++];
                if (c == '"') {
                    closed = true;
                    break;
                }
                if (c != '\\') {
                    t.text += c;
                    continue;
                }
                if (i >= line.size()) return false;
                const char e = line[i++];
                switch (e) {
                    case '"':
                        t.text += '"';
                        break;
                    case '\\':
                        t.text += '\\';
                        break;
                    case 'n':
                        t.text += '\n';
                        break;
                    case 'r':
                        t.text += '\r';
                        break;
                    case 't':
                        t.text += '\t';
                        break;
                    case 'x': {
                        if (i + 2 > line.size()) return false;
                        const int hi = hexDigit(line[i]), lo = hexDigit(line[i + 1]);
                        if (hi < 0 || lo < 0) return false;
                        t.text += char(hi * 16 + lo);
                        i += 2;
                        break;
                    }
                    default:
                        return false;
                }
            }
            if (!closed || (i < line.size() && line[i] != ' ')) return false;
        } else {
            const std::size_t start = i;
            while (i < line.size() && line[i] != ' ') ++i;
            t.text.assign(line.substr(start, i - start));
            if (t.text.find('"') != std::string::npos) return false;
        }
        out.push_back(std::move(t));
    }
    return true;
}

// Reads the tokens of one line in order; any mismatch turns ok off.
class Fields {
public:
    explicit Fields(const std::vector<Token>& t) : t_(t) {}
    bool ok() const { return ok_; }
    bool done() const { return i_ == t_.size(); }
    void fail() { ok_ = false; }

    bool is(const char* w) const { return i_ < t_.size() && !t_[i_].quoted && t_[i_].text == w; }
    bool take(const char* w) {
        if (!is(w)) return false;
        ++i_;
        return true;
    }
    void expect(const char* w) {
        if (!take(w)) ok_ = false;
    }
    std::string text() {
        if (i_ >= t_.size() || !t_[i_].quoted) return ok_ = false, std::string();
        return t_[i_++].text;
    }
    double real() {
        const std::string* s = plain();
        double v = 0;
        if (!s) return 0;
        const auto r = std::from_chars(s->data(), s->data() + s->size(), v);
        if (r.ec != std::errc() || r.ptr != s->data() + s->size()) ok_ = false;
        return v;
    }
    std::int64_t integer(std::int64_t lo, std::int64_t hi) {
        const std::string* s = plain();
        std::int64_t v = 0;
        if (!s) return 0;
        const auto r = std::from_chars(s->data(), s->data() + s->size(), v);
        if (r.ec != std::errc() || r.ptr != s->data() + s->size() || v < lo || v > hi) {
            ok_ = false;
            return 0;
        }
        return v;
    }
    std::uint32_t index() { return std::uint32_t(integer(0, 0xFFFFFFFFll)); }
    Point3 point() {
        Point3 p;
        p.x = real();
        p.y = real();
        p.z = real();
        return p;
    }
    Rgb colour() {
        Rgb c;
        c.r = int(integer(0, 255));
        c.g = int(integer(0, 255));
        c.b = int(integer(0, 255));
        return c;
    }

private:
    const std::string* plain() {
        if (i_ >= t_.size() || t_[i_].quoted) return ok_ = false, nullptr;
        return &t_[i_++].text;
    }
    const std::vector<Token>& t_;
    std::size_t i_ = 0;
    bool ok_ = true;
};

class TextReader {
public:
    TextReader(std::string_view text, WorldBuilder& b) : text_(text), b_(b) {}
    bool run();

private:
    bool fail(const std::string& why) { return b_.fail(why); }
    // The next line of the text without its line end; false at the end.
    bool line(std::string_view& out) {
        if (pos_ >= text_.size()) return false;
        std::size_t e = text_.find('\n', pos_);
        if (e == std::string_view::npos) e = text_.size();
        out = text_.substr(pos_, e - pos_);
        pos_ = e + 1;
        if (!out.empty() && out.back() == '\r') out.remove_suffix(1);
        lineNo_ = ++rawLine_;
        return true;
    }
    // Reads a section's header and lines and checks them.
    bool section(const char* name);
    // The next line of the section as fields; nullptr when it does not split.
    Fields* next() {
        if (next_ >= lines_.size()) return nullptr;
        lineNo_ = firstLine_ + next_;
        if (!tokenize(lines_[next_++], tokens_)) return nullptr;
        fields_ = std::make_unique<Fields>(tokens_);
        return fields_.get();
    }
    bool bad(const char* what) {
        return fail("line " + std::to_string(lineNo_) + " (" + what + ") is not valid");
    }
    bool finished(Fields* f, const char* what) {
        return f && f->ok() && f->done() ? true : bad(what);
    }
    bool parseScene();
    bool parseTables();
    bool parsePolygons();
    bool parsePolygon(std::uint64_t i, std::vector<Point3>& pts);
    bool parseOrders();

    std::string_view text_;
    WorldBuilder& b_;
    Tables tables_;
    std::size_t pos_ = 0, rawLine_ = 0, lineNo_ = 0;
    std::vector<std::string_view> lines_;  // the current section's lines, checked
    std::size_t next_ = 0, firstLine_ = 0;
    std::vector<Token> tokens_;
    std::unique_ptr<Fields> fields_;
};

bool TextReader::section(const char* name) {
    std::string_view head;
    if (!line(head)) return fail("it is cut short");
    std::vector<Token> t;
    if (!tokenize(head, t) || t.size() != 4 || t[0].quoted || t[0].text != "section" ||
        t[1].text != name)
        return fail(std::string("section ") + name + " is missing");
    Fields f(t);
    f.expect("section");
    f.expect(name);
    const std::int64_t count = f.integer(0, std::int64_t(text_.size()));
    const std::string& crcText = t[3].text;
    std::uint32_t crc = 0;
    const auto r = std::from_chars(crcText.data(), crcText.data() + crcText.size(), crc, 16);
    if (!f.ok() || crcText.size() != 8 || r.ec != std::errc() ||
        r.ptr != crcText.data() + crcText.size())
        return fail(std::string("the header of section ") + name + " is not valid");
    lines_.clear();
    next_ = 0;
    firstLine_ = rawLine_ + 1;
    std::uint32_t sum = 0;
    for (std::int64_t i = 0; i < count; ++i) {
        std::string_view l;
        if (!line(l)) return fail("it is cut short");
        sum = crc32c(sum, l.data(), l.size());
        sum = crc32c(sum, "\n", 1);
        lines_.push_back(l);
    }
    if (sum != crc) return fail(std::string("section ") + name + " fails its check");
    return true;
}

bool TextReader::parseScene() {
    SceneSettings& s = tables_.scene;
    Fields* f = next();
    if (f) {
        f->expect("background");
        s.background = f->colour();
    }
    if (!finished(f, "background")) return false;
    f = next();
    if (f) {
        f->expect("camera");
        s.camera.location = f->point();
        f->expect("direction");
        s.camera.direction = f->point();
        f->expect("up");
        s.camera.up = f->point();
        f->expect("zoom");
        s.camera.zoom = f->real();
        f->expect("near");
        s.camera.distanceFromEye = f->real();
    }
    if (!finished(f, "camera")) return false;
    f = next();
    if (f) {
        f->expect("fog");
        if (f->take("on"))
            s.fog.on = true;
        else if (f->take("off"))
            s.fog.on = false;
        else
            f->fail();
        f->expect("far");
        s.fog.farDepth = f->real();
        f->expect("near");
        s.fog.nearDepth = f->real();
    }
    if (!finished(f, "fog")) return false;
    f = next();
    if (f) {
        f->expect("normals");
        s.normalsAngle = f->real();
    }
    if (!finished(f, "normals")) return false;
    if (next_ != lines_.size()) return fail("section scene has too many lines");
    return true;
}

bool TextReader::parseTables() {
    if (!section("names")) return false;
    tables_.names.clear();
    while (next_ < lines_.size()) {
        Fields* f = next();
        std::string n;
        if (f) n = f->text();
        if (!finished(f, "name")) return false;
        tables_.names.push_back(std::move(n));
    }
    if (!section("groups")) return false;
    while (next_ < lines_.size()) {
        Fields* f = next();
        GroupEntry g;
        if (f) {
            f->expect("group");
            if (f->integer(1, kIndexMask) != std::int64_t(tables_.groups.size() + 1)) f->fail();
            f->expect("name");
            g.name = f->index();
            f->expect("father");
            g.father = f->index();
            if (f->take("reference")) {
                g.hasReference = true;
                g.reference = f->point();
            }
        }
        if (!finished(f, "group")) return false;
        tables_.groups.push_back(g);
    }
    if (!section("bitmaps")) return false;
    while (next_ < lines_.size()) {
        Fields* f = next();
        std::string path;
        if (f) {
            f->expect("bitmap");
            if (f->integer(1, kIndexMask) != std::int64_t(tables_.bitmaps.size() + 1)) f->fail();
            path = f->text();
        }
        if (!finished(f, "bitmap")) return false;
        tables_.bitmaps.push_back(std::move(path));
    }
    if (!section("lights")) return false;
    while (next_ < lines_.size()) {
        Fields* f = next();
        LightEntry l;
        if (f) {
            f->expect("light");
            if (f->integer(1, kIndexMask) != std::int64_t(tables_.lights.size() + 1)) f->fail();
            l.name = f->text();
            f->expect("location");
            l.location = f->point();
            f->expect("target");
            l.target = f->point();
            f->expect("type");
            l.type = int(f->integer(INT32_MIN, INT32_MAX));
            f->expect("ambient");
            l.ambient = f->real();
            f->expect("diffuse");
            l.diffuse = f->real();
            f->expect("specular");
            l.specular = f->real();
            f->expect("shining");
            l.shining = f->real();
            f->expect("entity");
            l.entity = f->index();
        }
        if (!finished(f, "light")) return false;
        tables_.lights.push_back(std::move(l));
    }
    return true;
}

bool TextReader::parsePolygon(std::uint64_t i, std::vector<Point3>& pts) {
    PolygonHead h;
    Fields* f = next();
    if (f) {
        f->expect("polygon");
        if (f->integer(1, kIndexMask) != std::int64_t(i + 1)) f->fail();
        f->expect("name");
        h.name = f->index();
        f->expect("group");
        h.group = f->index();
        f->expect("colour");
        h.fill = packRgb(f->colour());
        f->expect("translucent");
        h.fill |= std::uint32_t(f->integer(0, 255)) << 24;
        f->expect("brightness");
        h.brightness = std::uint8_t(f->integer(0, 255));
        f->expect("points");
        h.points = std::uint32_t(f->integer(0, SceneStore::kMaxPointsPerPolygon));
        if (f->take("light")) {
            h.flags |= kLit;
            h.light = packRgb(f->colour());
        }
        if (f->take("disabled")) h.flags |= kDisabled;
        if (f->take("rotated")) h.flags |= kRotated;
        if (f->take("extra")) h.flags |= kHasExtra;
    }
    if (!finished(f, "polygon")) return false;

    ExtraEntry x;
    bool pointData = false;
    if (h.flags & kHasExtra) {
        f = next();
        std::int64_t patches = 0;
        if (f) {
            f->expect("extra");
            f->expect("bitmap");
            x.bitmap = f->index();
            f->expect("rotation");
            x.rotation = f->real();
            f->expect("patches");
            patches = f->integer(0, std::int64_t(lines_.size()));
            f->expect("pointdata");
            pointData = f->integer(0, 1) == 1;
        }
        if (!finished(f, "extra")) return false;
        for (std::int64_t p = 0; p < patches; ++p) {
            f = next();
            Patch patch;
            if (f) {
                f->expect("patch");
                f->expect("colour");
                patch.colour = f->colour();
                f->expect("type");
                patch.type = int(f->integer(INT32_MIN, INT32_MAX));
                f->expect("points");
                const std::int64_t m = f->integer(0, SceneStore::kMaxPointsPerPolygon);
                for (std::int64_t q = 0; q < m && f->ok(); ++q) patch.points.push_back(f->point());
            }
            if (!finished(f, "patch")) return false;
            x.patches.push_back(std::move(patch));
        }
    }
    if (h.points > lines_.size() - next_) return bad("points");
    pts.resize(h.points);
    if (pointData) x.points.resize(h.points);
    for (std::uint32_t k = 0; k < h.points; ++k) {
        f = next();
        if (f) {
            f->expect("point");
            pts[k] = f->point();
            if (pointData) {
                PointExtra& pe = x.points[k];
                if (f->take("rgb")) {
                    pe.hasRgb = true;
                    pe.rgb = f->colour();
                }
                if (f->take("alpha")) pe.alpha = int(f->integer(0, 255));
                if (f->take("uv")) {
                    pe.bx = f->real();
                    pe.by = f->real();
                }
            }
        }
        if (!finished(f, "point")) return false;
    }
    if (!b_.addPolygon(h, pts.data())) return false;
    if (h.flags & kHasExtra) {
        x.polygon = std::uint32_t(i);
        if (!b_.addExtra(std::move(x))) return false;
    }
    return true;
}

bool TextReader::parsePolygons() {
    if (!section("polygons")) return false;
    Fields* f = next();
    std::int64_t polygons = 0, points = 0;
    if (f) {
        f->expect("count");
        polygons = f->integer(0, kIndexMask);
        points = f->integer(0, PointSpace::kLimit - 1);
    }
    if (!finished(f, "count")) return false;
    // Each polygon takes a line and each point one more: the counts must fit.
    if (std::uint64_t(polygons) + std::uint64_t(points) > lines_.size()) return bad("count");
    if (!b_.begin(std::move(tables_), std::uint64_t(polygons), std::uint64_t(points))) return false;
    std::vector<Point3> pts;
    for (std::int64_t i = 0; i < polygons; ++i)
        if (!parsePolygon(std::uint64_t(i), pts)) return false;
    if (next_ != lines_.size()) return fail("section polygons has too many lines");
    return true;
}

bool TextReader::parseOrders() {
    if (!section("orders")) return false;
    while (next_ < lines_.size()) {
        Fields* f = next();
        OrderEntry o;
        if (f) {
            f->expect("order");
            o.group = f->index();
            f->expect("polygons");
            const std::int64_t m = f->integer(0, kIndexMask);
            for (std::int64_t k = 0; k < m && f->ok(); ++k) o.polygons.push_back(f->index());
        }
        if (!finished(f, "order")) return false;
        if (!b_.addOrder(std::move(o))) return false;
    }
    return true;
}

bool TextReader::run() {
    std::string_view first;
    if (!line(first) || first.substr(0, std::strlen(kTextMagic)) != kTextMagic) {
        b_.error = foreignMessage();
        return false;
    }
    std::uint64_t version = 0;
    const std::string_view v = first.substr(std::strlen(kTextMagic));
    const auto r = std::from_chars(v.data(), v.data() + v.size(), version);
    if (r.ec != std::errc() || r.ptr != v.data() + v.size() || version == 0)
        return fail("its first line is not valid");
    if (version > kTextVersion) {
        b_.error = newerMessage(version, kTextVersion);
        return false;
    }
    if (!section("scene") || !parseScene() || !parseTables() || !parsePolygons() || !parseOrders())
        return false;
    std::string_view last;
    if (!line(last)) return fail("it is cut short");
    if (last != "end") return fail("it does not end where it should");
    for (std::size_t i = pos_; i < text_.size(); ++i)
        if (text_[i] != '\n' && text_[i] != '\r' && text_[i] != ' ')
            return fail("it has text after its end");
    return b_.finish();
}

}  // namespace

bool readText(ByteSource& in, WorldBuilder& b) {
    const std::uint64_t size = in.size();
    std::string text;
    text.resize(std::size_t(size));
    if (in.read(text.data(), text.size()) != text.size()) {
        b.error = in.failure().empty() ? "The world file could not be read" : in.failure();
        return false;
    }
    TextReader r(text, b);
    return r.run();
}

}  // namespace engine::world

// Writing the ".WLD" text world format: the same content as the binary one, one thing a
// line, so that a person can read it and a script can write it.
//
//   TARVIK WORLD TEXT 1
//   section scene 4 1c2d3e4f        <- name, number of lines, CRC-32C of those lines
//   background 0 0 0
//   ...
//   end
//
// Sections come in a fixed order: scene, names, groups, bitmaps, lights,
// polygons, orders. A section's check covers its lines, each followed by a line
// feed, so that line ends changed to CR LF still read. Numbers are the shortest
// text that reads back to the same double; texts are in double quotes with the
// escapes \" \\ \n \r \t and \xHH.

#include <charconv>
#include <cstdio>
#include <cstring>

#include "engine/WorldChecksum.h"
#include "engine/WorldCodec.h"

namespace engine::world {

namespace {

const char* const kSections[] = {"scene",  "names",    "groups", "bitmaps",
                                 "lights", "polygons", "orders"};

// ---- writing ------------------------------------------------------------------------------

void num(std::string& out, double v) {
    char buf[32];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    out.append(buf, r.ptr);
}

void num(std::string& out, std::int64_t v) {
    char buf[24];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    out.append(buf, r.ptr);
}

void word(std::string& out, const char* w) {
    if (!out.empty() && out.back() != '\n') out += ' ';
    out += w;
}
void field(std::string& out, const char* w, double v) {
    word(out, w);
    out += ' ';
    num(out, v);
}
void field(std::string& out, const char* w, std::int64_t v) {
    word(out, w);
    out += ' ';
    num(out, v);
}
void field(std::string& out, const char* w, Point3 p) {
    word(out, w);
    for (int a = 0; a < 3; ++a) {
        out += ' ';
        num(out, p[a]);
    }
}
void field(std::string& out, const char* w, Rgb c) {
    field(out, w, std::int64_t(c.r));
    out += ' ';
    num(out, std::int64_t(c.g));
    out += ' ';
    num(out, std::int64_t(c.b));
}

void quoted(std::string& out, std::string_view s) {
    if (!out.empty() && out.back() != '\n') out += ' ';
    out += '"';
    for (unsigned char c : s) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                if (c < 0x20 || c == 0x7F) {
                    static const char hex[] = "0123456789abcdef";
                    out += "\\x";
                    out += hex[c >> 4];
                    out += hex[c & 15];
                } else {
                    out += char(c);
                }
        }
    }
    out += '"';
}

struct Section {
    std::string body;
    std::size_t lines = 0;
    void end() {
        body += '\n';
        ++lines;
    }
};

bool emit(ByteSink& out, const char* name, const Section& s) {
    char crc[9];
    std::snprintf(crc, sizeof crc, "%08x", crc32c(0, s.body.data(), s.body.size()));
    std::string head = "section ";
    head += name;
    head += ' ';
    num(head, std::int64_t(s.lines));
    head += ' ';
    head += crc;
    head += '\n';
    return out.write(head.data(), head.size()) && out.write(s.body.data(), s.body.size());
}

}  // namespace

bool writeText(const WorldSource& src, ByteSink& out, std::string& error) {
    const Tables& t = src.tables;
    Section sec[7];
    {
        Section& s = sec[0];
        const SceneSettings& sc = t.scene;
        field(s.body, "background", sc.background);
        s.end();
        field(s.body, "camera", sc.camera.location);
        field(s.body, "direction", sc.camera.direction);
        field(s.body, "up", sc.camera.up);
        field(s.body, "zoom", sc.camera.zoom);
        field(s.body, "near", sc.camera.distanceFromEye);
        s.end();
        word(s.body, "fog");
        word(s.body, sc.fog.on ? "on" : "off");
        field(s.body, "far", sc.fog.farDepth);
        field(s.body, "near", sc.fog.nearDepth);
        s.end();
        field(s.body, "normals", sc.normalsAngle);
        s.end();
    }
    for (const std::string& n : t.names) {
        quoted(sec[1].body, n);
        sec[1].end();
    }
    for (std::size_t i = 0; i < t.groups.size(); ++i) {
        const GroupEntry& g = t.groups[i];
        std::string& b = sec[2].body;
        field(b, "group", std::int64_t(i + 1));
        field(b, "name", std::int64_t(g.name));
        field(b, "father", std::int64_t(g.father));
        if (g.hasReference) field(b, "reference", g.reference);
        sec[2].end();
    }
    for (std::size_t i = 0; i < t.bitmaps.size(); ++i) {
        field(sec[3].body, "bitmap", std::int64_t(i + 1));
        quoted(sec[3].body, t.bitmaps[i]);
        sec[3].end();
    }
    for (std::size_t i = 0; i < t.lights.size(); ++i) {
        const LightEntry& l = t.lights[i];
        std::string& b = sec[4].body;
        field(b, "light", std::int64_t(i + 1));
        quoted(b, l.name);
        field(b, "location", l.location);
        field(b, "target", l.target);
        field(b, "type", std::int64_t(l.type));
        field(b, "ambient", l.ambient);
        field(b, "diffuse", l.diffuse);
        field(b, "specular", l.specular);
        field(b, "shining", l.shining);
        field(b, "entity", std::int64_t(l.entity));
        sec[4].end();
    }
    {
        Section& s = sec[5];
        field(s.body, "count", std::int64_t(src.polygonCount()));
        s.body += ' ';
        num(s.body, std::int64_t(src.pointCount()));
        s.end();
        std::size_t nextExtra = 0;
        for (std::size_t i = 0; i < src.polygonCount(); ++i) {
            const PolygonHead h = src.head(i);
            field(s.body, "polygon", std::int64_t(i + 1));
            field(s.body, "name", std::int64_t(h.name));
            field(s.body, "group", std::int64_t(h.group));
            field(s.body, "colour", unpackRgb(h.fill));
            field(s.body, "translucent", std::int64_t(h.fill >> 24));
            field(s.body, "brightness", std::int64_t(h.brightness));
            field(s.body, "points", std::int64_t(h.points));
            if (h.flags & kLit) field(s.body, "light", unpackRgb(h.light));
            if (h.flags & kDisabled) word(s.body, "disabled");
            if (h.flags & kRotated) word(s.body, "rotated");
            const ExtraEntry* x = nullptr;
            if (nextExtra < src.extras.size() && src.extras[nextExtra].polygon == i)
                x = &src.extras[nextExtra++];
            if (x) word(s.body, "extra");
            s.end();
            if (x) {
                field(s.body, "extra bitmap", std::int64_t(x->bitmap));
                field(s.body, "rotation", x->rotation);
                field(s.body, "patches", std::int64_t(x->patches.size()));
                field(s.body, "pointdata", std::int64_t(x->points.empty() ? 0 : 1));
                s.end();
                for (const Patch& p : x->patches) {
                    field(s.body, "patch colour", p.colour);
                    field(s.body, "type", std::int64_t(p.type));
                    field(s.body, "points", std::int64_t(p.points.size()));
                    for (const Point3& q : p.points)
                        for (int a = 0; a < 3; ++a) {
                            s.body += ' ';
                            num(s.body, q[a]);
                        }
                    s.end();
                }
            }
            const std::uint32_t first = src.firstPoint(i);
            for (std::uint32_t k = 0; k < h.points; ++k) {
                field(s.body, "point", src.point(first + k));
                if (x && !x->points.empty()) {
                    const PointExtra& pe = x->points[k];
                    if (pe.hasRgb) field(s.body, "rgb", pe.rgb);
                    if (pe.alpha != 255) field(s.body, "alpha", std::int64_t(pe.alpha));
                    if (std::bit_cast<std::uint64_t>(pe.bx) != 0 ||
                        std::bit_cast<std::uint64_t>(pe.by) != 0) {
                        field(s.body, "uv", pe.bx);
                        s.body += ' ';
                        num(s.body, pe.by);
                    }
                }
                s.end();
            }
        }
    }
    for (const OrderEntry& o : src.orders) {
        std::string& b = sec[6].body;
        field(b, "order", std::int64_t(o.group));
        field(b, "polygons", std::int64_t(o.polygons.size()));
        for (std::uint32_t p : o.polygons) {
            b += ' ';
            num(b, std::int64_t(p));
        }
        sec[6].end();
    }

    std::string head = kTextMagic;
    num(head, std::int64_t(kTextVersion));
    head += '\n';
    bool ok = out.write(head.data(), head.size());
    for (int i = 0; i < 7 && ok; ++i) ok = emit(out, kSections[i], sec[i]);
    ok = ok && out.write("end\n", 4);
    if (!ok) error = "The world file could not be written";
    return ok;
}

}  // namespace engine::world

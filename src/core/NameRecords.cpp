#include "core/NameRecords.h"

#include <cstdio>

#include "core/AppContext.h"
#include "engine/Engine.h"

namespace core {

const std::array<TextType, 9>& textTypes() {
    static const std::array<TextType, 9> types{{
        {"Custm", "Custom (site specific)"},
        {"Infor", "General Information"},
        {"GrSup", "Ground Support"},
        {"SEvnt", "Seismic Event"},
        {"UGmap", "UG Mapping"},
        {"UGobs", "UG Observations"},
        {"Undef", "...Other (not defined)"},
        {"VText", "Visible Text"},
        {"LinkF", "File Link"},
    }};
    return types;
}

std::string_view typeCodeForCaption(std::string_view caption) {
    for (const auto& t : textTypes())
        if (t.caption == caption) return t.code;
    return {};
}

std::string_view typeCaptionForCode(std::string_view code) {
    for (const auto& t : textTypes())
        if (t.code == code) return t.caption;
    return {};
}

const std::array<std::string_view, 9>& colourMapCodes() {
    static const std::array<std::string_view, 9> codes{
        "CM_Point", "CM_DHAtr", "CM_Sig13", "CM_PPVel", "CM_s_FOS",
        "CM_s_S13", "CM_s_RCF", "CM_Dist",  "CM_OriJo",
    };
    return codes;
}

bool isColourMapRecord(std::string_view name) { return name.starts_with(kColourMapPrefix); }

std::string_view colourMapCodeOf(std::string_view name) {
    for (auto code : colourMapCodes())
        if (name.starts_with(code)) return code;
    return {};
}

std::string formatRecordDate(const ui::DateTime& t) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", t.year, t.month, t.day);
    return buf;
}

std::string formatRecordTime(const ui::DateTime& t) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%02d:%02d:%02d", t.hour, t.minute, t.second);
    return buf;
}

std::string withCrLfLines(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 8);
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\r') {
            out += kCrLf;
            if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
        } else if (c == '\n') {
            out += kCrLf;
        } else {
            out.push_back(c);
        }
    }
    return out;
}

std::string buildInfoRecord(std::string_view prefix, std::string_view code, std::string_view date,
                            std::string_view time, std::string_view text) {
    std::string s;
    s.reserve(prefix.size() + code.size() + date.size() + time.size() + text.size() + 8);
    s.append(prefix).append(code).append(kCrLf);
    s.append(date).append(kCrLf);
    s.append(time).append(kCrLf);
    s.append(withCrLfLines(text));
    return s;
}

std::string buildInfoRecord(bool bolProtected, std::string_view code, const ui::DateTime& when,
                            std::string_view text) {
    return buildInfoRecord(bolProtected ? kProtectedPrefix : kUnprotectedPrefix, code,
                           formatRecordDate(when), formatRecordTime(when), text);
}

std::optional<InfoRecord> parseInfoRecord(std::string_view name) {
    if (!name.starts_with(kProtectedPrefix) && !name.starts_with(kUnprotectedPrefix))
        return std::nullopt;
    InfoRecord r;
    r.prefix = std::string(name.substr(0, 3));
    r.code = std::string(name.substr(3, 5));
    // Three lines before the text: the head, the date and the time.
    std::string_view rest = name;
    std::string_view lines[3];
    for (int i = 0; i < 3; ++i) {
        auto end = rest.find(kCrLf);
        if (end == std::string_view::npos) {
            lines[i] = rest;
            rest = {};
            for (int k = i + 1; k < 3; ++k) lines[k] = {};
            break;
        }
        lines[i] = rest.substr(0, end);
        rest = rest.substr(end + 2);
    }
    r.date = std::string(lines[1]);
    r.time = std::string(lines[2]);
    r.text = std::string(rest);
    return r;
}

std::string clockTime12(const ui::DateTime& t) {
    int h = t.hour % 12;
    if (h == 0) h = 12;
    char buf[32];
    std::snprintf(buf, sizeof buf, "%d:%02d:%02d %s", h, t.minute, t.second,
                  t.hour < 12 ? "AM" : "PM");
    return buf;
}

namespace {

// The leading whole number of a text (0 when there is none), as lenient parsing reads it.
int leadingInt(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size() && s[i] == ' ') ++i;
    bool negative = false;
    if (i < s.size() && (s[i] == '-' || s[i] == '+')) negative = s[i++] == '-';
    long v = 0;
    for (; i < s.size() && s[i] >= '0' && s[i] <= '9' && v < 100000000; ++i)
        v = v * 10 + (s[i] - '0');
    return static_cast<int>(negative ? -v : v);
}

}  // namespace

std::string clockTimeTo24(std::string_view clockTime) {
    auto c1 = clockTime.find(':');
    if (c1 == std::string_view::npos) return std::string(clockTime);
    auto c2 = clockTime.find(':', c1 + 1);
    if (c2 == std::string_view::npos) return std::string(clockTime);

    int hour = leadingInt(clockTime.substr(0, c1));
    int minute = leadingInt(clockTime.substr(c1 + 1, c2 - c1 - 1));
    std::string_view seconds = clockTime.substr(c2 + 1);
    bool pm = false;
    if (seconds.ends_with(" PM")) {
        pm = true;
        seconds.remove_suffix(3);
    } else if (seconds.ends_with(" AM")) {
        seconds.remove_suffix(3);
    }
    if (pm) hour += 12;
    std::string out = std::to_string(hour) + ":";
    if (minute < 10) out += "0";
    out += std::to_string(minute);
    out += ":";
    out += seconds;
    return out;
}

std::string buildVTextName(const ui::DateTime& now, std::string_view label) {
    return buildInfoRecord(kUnprotectedPrefix, "VText", formatRecordDate(now),
                           clockTimeTo24(clockTime12(now)), label);
}

std::string strEntityName(const engine::Engine& eng, engine::Handle hPolygon) {
    char buf[kNameBufferLength];
    int n = eng.entity_get_name(hPolygon, buf, kNameBufferLength);
    if (n <= 0) return {};
    if (n > kNameBufferLength - 1) n = kNameBufferLength - 1;
    return std::string(buf, static_cast<std::size_t>(n));
}

bool bolNameHasText(std::string_view name) { return !(name.empty() || name == " "); }

void p_subSetGroupPolygonNames(engine::Engine& eng, engine::Handle hGroup,
                               std::string_view strName) {
    for (engine::Handle p = eng.group_get_first_polygon(hGroup); p != 0;
         p = eng.group_get_next_polygon(hGroup, p)) {
        eng.polygon_set_name(p, strName);
    }
}

engine::Handle topGroupOfEntity(const engine::Engine& eng, engine::Handle hEntity) {
    if (hEntity == 0) return 0;
    engine::Handle father = eng.group_get_father_group(hEntity);
    if (father == 0 || father == hEntity) return hEntity;
    engine::Handle grandfather = eng.group_get_father_group(father);
    if (grandfather == hEntity) return hEntity;
    return father;
}

engine::Handle entityOfPolygon(AppContext& ctx, engine::Handle hPolygon) {
    engine::Handle entity = ctx.engine.polygon_get_group(hPolygon);
    if (entity == 0)
        ctx.ui.msgBox("Polygon does not belong to a entity", ui::Buttons::OK, "Group error");
    return entity;
}

engine::Handle topGroupOfPolygon(AppContext& ctx, engine::Handle hPolygon) {
    engine::Handle entity = entityOfPolygon(ctx, hPolygon);
    return entity == 0 ? 0 : topGroupOfEntity(ctx.engine, entity);
}

}  // namespace core

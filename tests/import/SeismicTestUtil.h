#pragma once
// The events of a seismic import as the scene holds them: each marker group under
// "Seismic data" with its polygons' name and colour and its bounding box.

#include <string>
#include <vector>

#include "ImportTestUtil.h"

namespace seismictest {

struct Marker {
    engine::Handle group = 0;
    std::string name;
    engine::Rgb colour;
    int polygons = 0;
    bool oneName = true;  // every polygon carries the first one's name
    engine::Point3 lo, hi;
    engine::Point3 centre() const { return (lo + hi) * 0.5; }
    double halfZ() const { return (hi.z - lo.z) / 2; }
};

inline engine::Handle topGroup(const engine::Engine& e, const std::string& name) {
    for (engine::Handle g = e.group_get_first_group(); g; g = e.group_get_next(g))
        if (e.group_get_father_group(g) == 0 && e.entity_get_name(g) == name) return g;
    return 0;
}

inline std::vector<Marker> markers(const engine::Engine& e,
                                   const std::string& father = "Seismic data") {
    std::vector<Marker> out;
    const engine::Handle top = topGroup(e, father);
    if (top == 0) return out;
    for (engine::Handle g = e.group_get_first_included_group(top); g;
         g = e.group_get_next_included_group(top, g)) {
        Marker m;
        m.group = g;
        for (engine::Handle p = e.group_get_first_polygon(g); p;
             p = e.group_get_next_polygon(g, p)) {
            const std::string n = e.entity_get_name(p);
            if (m.polygons == 0) {
                m.name = n;
                m.colour = e.polygon_get_color(p);
            } else if (n != m.name) {
                m.oneName = false;
            }
            ++m.polygons;
        }
        e.group_bounding_box(g, m.lo, m.hi);
        out.push_back(m);
    }
    return out;
}

inline const engine::Rgb kBlue{7, 121, 248}, kGreen{7, 248, 7}, kOrange{248, 121, 7},
    kRed{248, 7, 7};

}  // namespace seismictest

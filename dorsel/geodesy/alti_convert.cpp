#include <dorsel/geodesy/alti_convert.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include <platform/cp1252.h>

AltiConvert* AltiConvert::FindAltiConvert(const char* grid, int create) {
    static std::vector<std::unique_ptr<AltiConvert>> known;
    if (grid == nullptr || *grid == '\0') return nullptr;
    for (const auto& converter : known)
        if (platform::equalNoCase1252(converter->m_name, grid)) return converter.get();
    if (create == 0) return nullptr;
    known.emplace_back(new AltiConvert(grid));
    return known.back().get();
}

int AltiConvert::LoadGRID() {
    if (m_grid) return 1;
    m_fault.clear();
    std::string content;
    if (!geodesy::readGridFile(m_name.c_str(), content, m_fault)) return 0;
    m_grid = geodesy::HeightGrid::parse(content, m_fault);
    return m_grid ? 1 : 0;
}

double AltiConvert::Convert(double height, const double* geo, int direction) const {
    double surface = 0;
    if (!m_grid || geo == nullptr || !std::isfinite(height) || !m_grid->heightAt(geo, surface))
        return std::numeric_limits<double>::quiet_NaN();
    return direction != 0 ? height + surface : height - surface;
}

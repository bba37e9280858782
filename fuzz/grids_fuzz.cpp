#include <cstdint>
#include <string_view>

#include <dorsel/geodesy/datum_grid.h>
#include <dorsel/geodesy/height_grid.h>

/// Any text is read as both kinds of grid; one that is whole answers anywhere.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string fault;
    double shift[3], height = 0;
    const auto heights = geodesy::HeightGrid::parse(text, fault);
    const auto datum = geodesy::DatumGrid::parse(text, fault);
    for (double at = -180; at <= 180; at += 0.7) {
        const double geo[2] = {at, at / 2};
        if (heights) heights->heightAt(geo, height);
        if (heights) heights->precisionAt(geo);
        if (datum != nullptr) datum->parametersAt(geo, shift);
    }
    return 0;
}

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <dorsel/geodesy/projection.h>

/// A sound definition projects a point of its domain to a finite place and back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> faults;
    auto definition = geodesy::readProjection("Essai", text, faults);
    if (definition.has_value() != faults.empty()) std::abort();
    if (!definition) return 0;
    const CtesProj projection(std::move(*definition));
    const double geo[2] = {2.5, 46.5};
    double xy[2], back[2];
    if (projection.GeoToXy(geo, xy) != 0 && projection.XyToGeo(xy, back) != 0 && back[1] != back[1])
        std::abort();
    return 0;
}

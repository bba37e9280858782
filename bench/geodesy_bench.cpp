// Projections beside PROJ, point by point, and `kestra convert` beside cs2cs over a file of a million lines.
#include <proj.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>

#include <dorsel/geodesy/lambert_conic.h>
#include <dorsel/geodesy/projection.h>

#include "side_by_side.h"

namespace {

constexpr int points = 100'000;
constexpr int lines = 1'000'000;
const std::string lambert93 =
    "+proj=lcc +lat_1=44 +lat_2=49 +lat_0=46.5 +lon_0=3 +x_0=700000 +y_0=6600000 +ellps=GRS80";
const std::string extended =
    "+proj=lcc +lat_1=46.8 +lat_0=46.8 +k_0=0.99987742 +x_0=600000 +y_0=2200000 +a=6378249.2 +b=6356515.0 "
    "+pm=paris";

struct Point {
    double geo[3], plane[3], old[3];
};

std::vector<Point> somePoints(const CtesProj& to, const CtesProj& old) {
    std::mt19937 random(93);
    std::uniform_real_distribution<double> longitude(-4, 8), latitude(42, 51);
    std::vector<Point> made(points);
    for (Point& p : made) {
        p = {{longitude(random), latitude(random), 100}, {0, 0, 100}, {0, 0, 100}};
        to.GeoToXy(p.geo, p.plane);
        old.GeoToXy(p.geo, p.old);
    }
    return made;
}

/// PROJ over all points, the coordinates in `at`.
void projAll(PJ* operation, PJ_DIRECTION direction, const std::vector<Point>& all, double (Point::*at)[3],
             double unit) {
    double sum = 0;
    for (const Point& p : all) {
        const double* from = p.*at;
        const PJ_COORD out =
            proj_trans(operation, direction, proj_coord(from[0] * unit, from[1] * unit, from[2], 0));
        sum += out.xy.x;
    }
    bench::keep(sum);
}

void convertFile(const std::vector<Point>& all) {
    const std::string folder = std::string(P_tmpdir) + "/";
    const std::string file = folder + "kestra_bench_points.txt";
    std::FILE* stream = std::fopen(file.c_str(), "w");
    if (stream == nullptr) return;
    for (int i = 0; i < lines; ++i) {
        const Point& p = all[static_cast<std::size_t>(i % points)];
        std::fprintf(stream, "%.3f %.3f %.3f\n", p.old[0], p.old[1], p.old[2]);
    }
    std::fclose(stream);
    const auto run = [](const std::string& command) {
        if (std::system(command.c_str()) != 0) std::fprintf(stderr, "failed: %s\n", command.c_str());
    };
    const std::string host = KESTRA_HOST " convert --from L-IIE --to L-93 " + file + " >/dev/null 2>&1";
    const std::string peer = "cs2cs -f %.4f " + extended + " +towgs84=-168,-60,320 +to " + lambert93 +
                             " +towgs84=0,0,0 <" + file + " >/dev/null 2>&1";
    bench::sideBySide(
        "kestra convert, 1,000,000 lines", 0.4, [&] { run(host); }, "cs2cs", [&] { run(peer); }, 3);
    std::remove(file.c_str());
}

}  // namespace

int main() {
    const CtesProj& to = *CtesProj::GetProjection("L-93");
    const CtesProj& old = *CtesProj::GetProjection("L-IIE");
    const std::vector<Point> all = somePoints(to, old);
    PJ* plain = proj_create(nullptr, lambert93.c_str());
    PJ* shifted = proj_create(nullptr, ("+proj=pipeline +step +inv " + extended +
                                        " +step +proj=push +v_3 +step +proj=cart +a=6378249.2 +b=6356515.0"
                                        " +step +proj=helmert +x=-168 +y=-60 +z=320 +step +inv +proj=cart"
                                        " +ellps=GRS80 +step +proj=pop +v_3 +step " +
                                        lambert93)
                                           .c_str());
    bench::sideBySide(
        "geographic to Lambert-93, 100,000 points", 0.4,
        [&] {
            double out[3], sum = 0;
            for (const Point& p : all) to.GeoToXy(p.geo, out), sum += out[0];
            bench::keep(sum);
        },
        "PROJ", [&] { projAll(plain, PJ_FWD, all, &Point::geo, geodesy::degree); }, 15);
    bench::sideBySide(
        "Lambert-93 to geographic, 100,000 points", 0.5,
        [&] {
            double out[3], sum = 0;
            for (const Point& p : all) to.XyToGeo(p.plane, out), sum += out[0];
            bench::keep(sum);
        },
        "PROJ", [&] { projAll(plain, PJ_INV, all, &Point::plane, 1); }, 15);
    bench::sideBySide(
        "extended Lambert II to Lambert-93, 100,000 points", 0.4,
        [&] {
            double out[3] = {0, 0, 100}, sum = 0;
            for (const Point& p : all) {
                old.XyToGeo(p.old, out);
                old.GetEllipsoide()->DatumShift(out, to.GetEllipsoide());
                to.GeoToXy(out, out);
                sum += out[0];
            }
            bench::keep(sum);
        },
        "PROJ", [&] { projAll(shifted, PJ_FWD, all, &Point::old, 1); }, 15);
    std::vector<double> firstTimes;
    for (const char* name : {"L-I", "L-II", "L-III", "L-IV", "LZ93-CC42", "LZ93-CC43", "LZ93-CC44"})
        firstTimes.push_back(bench::milliseconds([&] { bench::keep(CtesProj::GetProjection(name)); }));
    const double first = bench::median(firstTimes);
    bench::printLine("a projection by name, the first time", first * 1000, "wanted", 50, "us", 1);
    const double later = bench::milliseconds([] {
        for (int i = 0; i < points; ++i) bench::keep(CtesProj::GetProjection("L-III"));
    });
    bench::printLine("a projection by name, later", later * 1000 / points, "wanted", 1, "us", 1);
    convertFile(all);
}

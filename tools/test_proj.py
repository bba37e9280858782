"""Every system of `kestra projections` against PROJ's cct on the same points: tools/test_proj.py KESTRA"""
import subprocess
import sys

LIMIT = 0.0001  # metres
NTF = "+a=6378249.2 +b=6356515.0"
GRS80 = "+ellps=GRS80"
SHIFT = (f"+step +proj=push +v_3 +step +proj=cart {NTF} +step +proj=helmert +x=-168 +y=-60 +z=320 "
         f"+step +inv +proj=cart {GRS80} +step +proj=pop +v_3 ")
IN_DEGREES = "+step +proj=unitconvert +xy_in=deg +xy_out=rad "


def zone(grades, k0, x0, y0):
    phi = grades * 0.9
    return f"+proj=lcc +lat_1={phi!r} +lat_0={phi!r} +k_0={k0} +x_0={x0} +y_0={y0} {NTF} +pm=paris"


def conformal(number):
    return (f"+proj=lcc +lat_0={number} +lat_1={number - 0.75} +lat_2={number + 0.75} +lon_0=3 +x_0=1700000 "
            f"+y_0={(number - 41) * 1000000 + 200000} {GRS80}")


SYSTEMS = {
    "L-I": ("NTF", zone(55, 0.99987734, 600000, 200000)),
    "L-II": ("NTF", zone(52, 0.99987742, 600000, 200000)),
    "L-III": ("NTF", zone(49, 0.9998775, 600000, 200000)),
    "L-IV": ("NTF", zone(46.85, 0.99994471, 234.358, 185861.369)),
    "L-IIE": ("NTF", zone(52, 0.99987742, 600000, 2200000)),
    "L-93": ("RGF93", f"+proj=lcc +lat_0=46.5 +lat_1=44 +lat_2=49 +lon_0=3 +x_0=700000 +y_0=6600000 {GRS80}"),
    **{f"LZ93-CC{n}": ("RGF93", conformal(n)) for n in range(41, 51)},
}


def run(command, points):
    text = "".join(f"{x!r} {y!r} {z!r}\n" for x, y, z in points)
    out = subprocess.run(command, input=text, capture_output=True, text=True, check=True).stdout
    return [tuple(map(float, line.split()[:3])) for line in out.splitlines() if line and line[0] != "#"]


def proj(pipeline, points, inverse=False):
    return run(["cct", "-t", "0", "-d", "12"] + (["-I"] if inverse else []) + pipeline.split(), points)


def kestra(source, target, points):
    return run([sys.argv[1], "convert", "--from", source, "--to", target, "--decimals", "12", "-"], points)


def largest(ours, theirs):
    assert len(ours) == len(theirs) > 0
    return max(max(abs(a - b) for a, b in zip(p[:2], q[:2])) for p, q in zip(ours, theirs))


france = [(lon / 2 - 5, 41 + lat / 2, float(height)) for lon in range(31) for lat in range(22) for height in (0, 1500)]
failed = 0


def check(what, difference):
    global failed
    good = difference <= LIMIT
    failed += not good
    print(f"{what:34s} {difference:.2e} m  {'ok' if good else 'TOO FAR'}")


for name, (datum, definition) in SYSTEMS.items():
    globe = "GEO-" + datum
    plane = proj(definition, france)
    check(f"{globe} -> {name}", largest(kestra(globe, name, france), plane))
    back, expected = kestra(name, globe, plane), proj(definition, plane, inverse=True)
    check(f"{name} -> {globe}", largest(back, expected) * 111_000)
    if datum == "NTF":
        onto93 = f"+proj=pipeline +step +inv {definition} {SHIFT} +step {SYSTEMS['L-93'][1]}"
        check(f"{name} -> L-93", largest(kestra(name, "L-93", plane), proj(onto93, plane)))
        in93 = proj(onto93, plane)
        check(f"L-93 -> {name}", largest(kestra("L-93", name, in93), proj(onto93, in93, inverse=True)))
print("all within 0.1 mm" if not failed else f"{failed} comparisons too far")
sys.exit(failed != 0)

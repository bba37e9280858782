#include <cstdio>
#include <string>

#include <dorsel/geodesy/projection.h>
#include <dorsel/trace.h>

#include "command.h"

namespace {

std::string linesOf(const CtesProj& projection) {
    using geodesy::ProjectionKind;
    const auto& c = projection.Constants();
    char text[400];
    if (c.kind == ProjectionKind::geographic)
        std::snprintf(text, sizeof text, "%-12s degrés décimaux, Greenwich", projection.Name());
    else if (c.kind == ProjectionKind::oneParallel)
        std::snprintf(text, sizeof text, "%-12s phi0 %.10g k0 %.9g lambda0 %.12g X0 %.3f Y0 %.3f",
                      projection.Name(), c.phi0, c.k0, c.lambda0, c.x0, c.y0);
    else
        std::snprintf(text, sizeof text,
                      "%-12s phi0 %.10g phi1 %.10g phi2 %.10g lambda0 %.12g X0 %.3f Y0 %.3f",
                      projection.Name(), c.phi0, c.phi1, c.phi2, c.lambda0, c.x0, c.y0);
    std::string lines = std::string(text) + '\n';
    std::snprintf(text, sizeof text, "%-12s %s a %.3f e %.15g", "",
                  c.datumName.empty() ? (c.hasDatum ? "système propre" : "sans lien avec les autres systèmes")
                                      : c.datumName.c_str(),
                  c.radius, c.eccentricity);
    lines += text;
    if (c.hasDatum) {
        std::snprintf(text, sizeof text, " vers RGF93 %+g %+g %+g m", c.shift[0], c.shift[1], c.shift[2]);
        lines += text;
    }
    if (!c.grid.empty()) lines += ", grille " + c.grid;
    return lines + '\n' + std::string(13, ' ') + c.source + '\n';
}

int listProjections(Arguments arguments, Terminal& terminal) {
    if (!arguments.empty()) return refuseUsage(projectionsCommand, "aucun argument n'est attendu", terminal);
    // The faults are told below: their traces would say them twice.
    const TraceOutput before = setTraceOutput([](const char*, bool) {});
    const auto& faults = CtesProj::LoadAll();
    setTraceOutput(before);
    for (const auto& published : geodesy::publishedProjections())
        CtesProj::GetProjection(published.name.c_str());
    for (const CtesProj* loaded = CtesProj::g_pFirstCtesProj; loaded != nullptr; loaded = loaded->Next())
        terminal.output(linesOf(*loaded));
    for (const std::string& fault : faults) terminal.error(fault + '\n');
    return faults.empty() ? exitDone : exitFailed;
}

}  // namespace

const Command projectionsCommand = {"projections", "liste les projections, leurs constantes et leurs sources",
                                    "Usage : kestra projections\n\n"
                                    "Liste les projections publiées puis celles que définit le fichier de "
                                    "réglages « projections », trois lignes\n"
                                    "chacune : nom et constantes, système géodésique, source. Les "
                                    "définitions fautives sont dites sur l'erreur\n"
                                    "standard. Code de retour : 0, ou 1 quand une définition est fautive.\n",
                                    listProjections};

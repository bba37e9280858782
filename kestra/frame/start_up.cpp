#include "start_up.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <dorsel/settings.h>
#include <dorsel/trace.h>
#include <kestra/frame/frame_hooks.h>

namespace kestra {
namespace {

constexpr int companySize = 250;
constexpr int projectionSize = 1000;

void readNumber(const char* key, const char* mode, int& number) {
    double value = 0;
    if (getr_ini("ZENTAR", "general", mode, key, &value) == 0 || std::isnan(value)) return;
    number =
        static_cast<int>(std::clamp(value, static_cast<double>(INT32_MIN), static_cast<double>(INT32_MAX)));
}

}  // namespace

void readStartUpSettings() {
    readNumber("poste", "l", DOS::Poste);
    readNumber("Nbresauve", "lr", DOS::Nbresauve);
    readNumber("Debug", "l", DOS::Debug);
}

void readCompanyName() {
    char name[companySize];
    const auto read = [&](const char* source, const char* mode) {
        const int length = gets_ini(source, "general", mode, "CODSOC", name, companySize);
        if (length >= 1) std::strcpy(vfVar.society, name);
        return length;
    };
    if (read("torel", "lr") < 2) read("OLMEK", "Plr");
}

void readProjectionName() {
    char name[projectionSize];
    pvg.projection[0] = '\0';
    if (gets_ini("torel", "VORTLIN", "lr", "PROJECTION", name, projectionSize) >= 1 ||
        gets_ini("OLMEK", "GENERAL", "Plr", "PROJECTION", name, projectionSize) >= 1)
        std::strcpy(pvg.projection, name);
}

void checkSharedBlock() {
    constexpr int expected = sizeof(DorselSeg);
    if (pvg.size != expected)
        mprintf("$G$******** Probleme de taille (KESTRA) de 'DorselSeg' %d au lieu de %d ", pvg.size,
                expected);
}

void cleanUpAtLastExit() {
    const char* database = temporaryDatabase();
    if (std::strlen(database) > 2) DOS::Delete(database);
    if (projectHooks() != nullptr) DOS::Free_ini(projectHooks()->searchList);
    DOS::Free_ini(&DOS::chemins_WAU);
    DOS::Free_ini(&DOS::chemins_ENTETE);
}

}  // namespace kestra

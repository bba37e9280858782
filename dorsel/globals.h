#pragma once
#include <cstddef>
#include <cstdint>

#include <platform/export.h>

/// The values that the base library shares with every module of the process.

/// Version number of the running application family.
DORSEL_API extern int g_Version;

namespace DOS {
/// Work-station number, number of backups to keep, trace level (bit field: 0 no trace, 2 traces of the help
/// dispatcher).
DORSEL_API extern int Poste;
DORSEL_API extern int Nbresauve;
DORSEL_API extern int Debug;
/// Search paths for work files and header files, and the default drawing extension: lists of `Alloc_ini`,
/// null until read.
DORSEL_API extern char* chemins_WAU;
DORSEL_API extern char* chemins_ENTETE;
DORSEL_API extern char* Dwg_Dxf;
/// Path of the default project file.
DORSEL_API extern char m_NomChtDef[260];
}  // namespace DOS

/// Shared values that reports print.
struct VfVar {
    char society[251];  ///< company name, at most 250 bytes; replaces "#SOCIETY#"
};
DORSEL_API extern VfVar vfVar;

/// Shared settings, the "DorselSeg" segment. Every module of the family checks `size` before it reads on.
struct DorselSeg {
    std::int32_t size;        ///< of this record in bytes
    char projection[1000];    ///< name of the current projection, empty for none
    char localFolder[260];    ///< settings of this machine (letter L), ending in a separator; empty for none
    char networkFolder[260];  ///< settings shared on the network (letters N and R), ending in a separator
    unsigned char reserved[2940];
};
static_assert(sizeof(DorselSeg) == 4464);
static_assert(offsetof(DorselSeg, projection) == 4);
static_assert(offsetof(DorselSeg, localFolder) == 1004);
static_assert(offsetof(DorselSeg, networkFolder) == 1264);

/// When the module is loaded the folders are those that the environment variables KESTRA_LOCAL and
/// KESTRA_NETWORK name; without KESTRA_LOCAL the folder of the running program, without KESTRA_NETWORK the
/// local folder. A host may set them at any time.
DORSEL_API extern DorselSeg pvg;

/// Shared values that the list controls read.
struct SystemVar {
    std::int32_t size;  ///< of this record in bytes
};
DORSEL_API extern SystemVar* g_pSystemVar;

/// Registry path below the current user's hive under which the list controls keep their layouts; no trailing
/// `\`.
DORSEL_API extern const char* g_RegTOREL_32;

/// The library's marker for an undefined real: 50 grads in radians, pi/4.
DORSEL_API extern const double _50rd;
/// Factor from grads to radians, pi/200 (a grad is the 400th part of a turn).
DORSEL_API extern const double grade_en_radian;

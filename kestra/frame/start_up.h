#pragma once

/// The steps of start-up and exit that touch only the base library's settings and shared values.
namespace kestra {

/// Version number of the application family that the library publishes.
constexpr int familyVersion = 2010;

/// "poste", "Nbresauve" and "Debug" of "ZENTAR" into `DOS::Poste`, `DOS::Nbresauve` and `DOS::Debug`; a
/// missing one stays as it was. Fractions are cut; values beyond 32 bits give the nearest that fits.
void readStartUpSettings();
/// "CODSOC" of "torel", or of "OLMEK" when that has fewer than 2 characters, into `vfVar`; when both are
/// missing the name stays as it was.
void readCompanyName();
/// "PROJECTION" of "torel", else of "OLMEK", into `pvg`; empty when both are missing.
void readProjectionName();
/// Writes a general warning when `pvg` records another size than it has.
void checkSharedBlock();
/// Deletes the temporary database and frees the path lists.
void cleanUpAtLastExit();

}  // namespace kestra

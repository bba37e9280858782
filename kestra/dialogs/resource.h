#pragma once
/* Numbers of the library's resources: this file is read by the resource compiler too. */

#define IDD_COLONNES 243
#define IDC_COLONNES_LISTE 1001

#pragma once
/* Numbers of the library's resources: this file is read by the resource compiler too. */

#define IDD_COLONNES 243
#define IDC_COLONNES_LISTE 1001

#define IDD_PROJECTIONS 239
#define IDC_PROJ_ORIGINE 1072
#define IDC_PROJ_FINALE 1073
#define IDC_PROJ_TEXTE 1074
#define IDC_ALTI_ORIGINE 1075
#define IDC_ALTI_FINALE 1076
#define IDC_PROJ_DZ 1134
#define IDC_PROJ_APPLIQUER 1135
#define IDC_ALTI_PARCOURIR_ORIGINE 1136
#define IDC_ALTI_PARCOURIR_FINALE 1137

#define IDD_TABLES 251
#define IDC_TABLES_LISTE 1151
#define IDC_TABLES_TABLES 1152
#define IDC_TABLES_REQUETES 1153

#pragma once
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <dorsel/geodesy/grid_text.h>
#include <platform/export.h>

namespace geodesy {

/// The national grid of datum parameters: at each node the three values that lead from NTF to RGF93 there.
///
/// Source: IGN, "Grille de paramètres de transformation de coordonnées GR3DF97A, notice d'utilisation" (NT/G
/// 88, 1997). The text file has header lines GR3D, GR3D1 (west, east, south, north, step in longitude, step
/// in latitude; degrees), GR3D2 (INTERPOLATION BILINEAIRE), GR3D3 (the precision codes), then one line a
/// node: record code, longitude, latitude (RGF93, Greenwich), Tx, Ty, Tz (m), precision code, map sheet. The
/// nodes may come in any order; each must come once.
class DORSEL_API DatumGrid {
  public:
    /// Reads a grid's text. Null, with a message in `fault`, when it is not one whole grid.
    static std::shared_ptr<const DatumGrid> parse(std::string_view text, std::string& fault);
    /// Reads a grid's file (`readGridFile`), once a process and name: later calls give the same grid.
    static std::shared_ptr<const DatumGrid> load(const std::string& file, std::string& fault);

    /// The parameters at a place given in RGF93. False, with `shift` untouched, outside the grid.
    bool parametersAt(const double geo[2], double shift[3]) const;
    /// Accuracy that the grid states for a place (m): that of the worst of the four nodes around it, by their
    /// codes (NT/G 88: 01 5 cm, 02 10 cm, 03 20 cm, 04 50 cm, any other more than 1 m, given as 1). 0
    /// outside.
    double accuracyAt(const double geo[2]) const;

  private:
    struct Node {
        float shift[3];
        signed char code;
    };
    bool readNode(NumberReader line);

    GridFrame m_frame;
    std::vector<Node> m_nodes;  ///< row by row from the south-west
};

}  // namespace geodesy

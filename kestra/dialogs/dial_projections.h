#pragma once
#include <windows.h>

#include <dorsel/geodesy/alti_convert.h>
#include <dorsel/geodesy/projection.h>
#include <platform/export.h>
#include <platform/window/dialog.h>

/// Choice of a source and a target projection, of altitude grids and of a constant to add to the heights;
/// what was chosen then converts points, while the dialog is shown and after it has closed.
///
/// What differs from what a reader may expect: Enter does not close the dialog; only the apply button and
/// cancel do. The projections and grids are not owned; they live until the process ends.
class KESTRA_API CDialProjections : public CDialog {
  public:
    explicit CDialProjections(CWnd* parent = nullptr);

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    /// Shows the dialog; bit 0 of `mode`: the source may be edited, bit 1: the target may. IDOK when choices
    /// were applied, else IDCANCEL.
    virtual INT_PTR Choose(int mode);

    /// Converts X, Y (metres; degrees for a geographic system) and the height (metres) of `in` to `out`,
    /// which may be the same array; `m_geo` receives the geographic point. 1, or 0 with `out` untouched when
    /// a projection or its datum is missing, a step fails, the point lies outside a grid, or a grid that was
    /// chosen is not loaded.
    virtual int Transform(const double in[3], double out[3]);

    /// Takes the choices from the controls and closes the dialog; it stays open, with a message, when the
    /// constant is no number. A grid that cannot be loaded is taken as it is, without a word.
    void OnBnClickedApply();
    /// Let the user browse for a grid file and put its path into the source's, the target's, any control.
    void OnBnClickedBPathFrom();
    void OnBnClickedBPathTo();
    void OnBnClickedBPath(int control);

    CString m_texte;                      ///< information line, empty for none
    CString m_titre;                      ///< window title, empty for the resource's
    CString m_projOrigine, m_projFinale;  ///< names of the projections
    CtesProj* m_pOrigine = nullptr;       ///< set when applied; null for an unknown name
    CtesProj* m_pFinale = nullptr;
    std::int32_t m_mode = 3;                ///< see `Choose`
    double m_geo[3] = {0, 0, 0};            ///< last point: longitude, latitude (degrees), converted height
    CString m_altiOrigine, m_altiFinale;    ///< "name=grid file", a grid file, or "$..." for no grid
    AltiConvert* m_pAltiOrigine = nullptr;  ///< set when applied; null for no grid
    AltiConvert* m_pAltiFinale = nullptr;
    double m_dz = 0;  ///< added to every converted height (m)

  protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    void fillAltitudes();
    void enableByMode();
};

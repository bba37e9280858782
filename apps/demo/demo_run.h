#pragma once
#include <string>

#include "main_window.h"

/// Drives the window as a person would, with real mouse input, and writes down what came of it: `rapport.txt`
/// (UTF-8, a line a step), `listing.htm` and `table.htm` in a folder.
class DemoRun {
  public:
    /// `folder` ends in a separator.
    DemoRun(MainWindow& window, std::string folder) : m_window(window), m_folder(std::move(folder)) {}
    /// Runs all steps; 0 when each did what it should, else 1.
    int run(const char* project);

  protected:
    void report(bool good, const CString& line);
    bool waitUntil(bool (*done)(DemoRun&), int milliseconds);

    MainWindow& m_window;
    std::string m_folder;
    std::string m_report;
    bool m_good = true;

  private:
    void nameModules();
    void openProject(const char* project);
    void sortByClick();
    void hideColumn();
    void fitColumn();
    void print();
    void copy();
    void openTable();
    void sortTable();
    void printTable();
    /// Waits until somebody has taken the picture NAME.png.
    void waitForPicture(const char* name);
    void clickHeader(CLraListCtrl& list, int x, int clicks);
    bool isSorted(int column);
};

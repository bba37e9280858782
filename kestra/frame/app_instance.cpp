#include <kestra/frame/app.h>
#include <kestra/frame/module.h>

namespace {

CKestraApp theApp;

/// Stands for the framework's attach and detach code: static objects of a library live exactly that long.
struct Attachment {
    Attachment() { theApp.InitInstance(); }
    ~Attachment() { theApp.ExitInstance(); }
} attachment;

}  // namespace

int KestraInitInstance() {
    return theApp.InitInstance();
}

int KestraExitInstance() {
    return theApp.ExitInstance();
}

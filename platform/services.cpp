#include <cstring>

#include <platform/replaceable.h>
#include <platform/system_services.h>

namespace platform {
namespace {

template <class Service, Service& (*system)()>
ServicePlace<Service>& place() {
    static ServicePlace<Service> only(system());
    return only;
}

}  // namespace

Clock::~Clock() = default;
Machine::~Machine() = default;
Prompt::~Prompt() = default;

FileSystem& theFiles() {
    return place<FileSystem, systemFiles>().inForce();
}
FileSystem* replaceFiles(FileSystem* files) {
    return place<FileSystem, systemFiles>().replace(files);
}
Sockets& theSockets() {
    return place<Sockets, systemSockets>().inForce();
}
Sockets* replaceSockets(Sockets* sockets) {
    return place<Sockets, systemSockets>().replace(sockets);
}
Clock& theClock() {
    return place<Clock, systemClock>().inForce();
}
Clock* replaceClock(Clock* clock) {
    return place<Clock, systemClock>().replace(clock);
}
Machine& theMachine() {
    return place<Machine, systemMachine>().inForce();
}
Machine* replaceMachine(Machine* machine) {
    return place<Machine, systemMachine>().replace(machine);
}
Prompt& thePrompt() {
    return place<Prompt, systemPrompt>().inForce();
}
Prompt* replacePrompt(Prompt* prompt) {
    return place<Prompt, systemPrompt>().replace(prompt);
}

bool Prompt::chooseFile(FileQuestion&) {
    return false;
}
bool Prompt::chooseText(ListQuestion&) {
    return false;
}

Answer neutralAnswer(unsigned style) {
    switch (style & 0xF) {
        case styleOkCancel:
        case styleYesNoCancel:
        case styleRetryCancel:
            return answerCancel;
        case styleAbortRetryIgnore:
            return answerIgnore;
        case styleYesNo:
            return answerNo;
        default:
            return answerOk;
    }
}

}  // namespace platform

int AfxMessageBox(const char* text, unsigned style, unsigned) {
    return platform::thePrompt().ask(style, text != nullptr ? text : "", nullptr);
}

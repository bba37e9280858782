#pragma once
/// The application object and module state that a library has, on either system: the framework's own on
/// Windows; elsewhere what the same code needs to stand, without windows and resources.
#ifdef _WIN32
#include <platform/window/module_state.h>
#include <platform/window/win_app.h>
#else
#include <platform/linux/application.h>
#endif

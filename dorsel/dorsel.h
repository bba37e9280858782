#pragma once
/// All of the base library.
#include <dorsel/geodesy/alti_convert.h>
#include <dorsel/geodesy/projection.h>
#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <dorsel/settings.h>
#include <dorsel/strings.h>
#include <dorsel/trace.h>

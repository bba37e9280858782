#include <platform/export.h>

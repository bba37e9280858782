#include <platform/arrays.h>

CInvalidArgException::CInvalidArgException() : std::invalid_argument("invalid argument") {}
CInvalidArgException::~CInvalidArgException() = default;

// A module is made of its rooms; CMake wants one source of its own.

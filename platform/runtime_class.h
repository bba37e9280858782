#pragma once
#include <cstring>

/// Run-time class name of a window or socket object: what it is, known by name across modules.
/// A class with one of its own declares
///
///     static const CRuntimeClass runtimeClass;
///     const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }
struct CRuntimeClass {
    const char* m_lpszClassName;
    const CRuntimeClass* m_pBaseClass;

    /// True for the class itself and for what it derives from; classes are told apart by name.
    bool IsDerivedFrom(const CRuntimeClass& other) const {
        for (const CRuntimeClass* each = this; each != nullptr; each = each->m_pBaseClass) {
            if (std::strcmp(each->m_lpszClassName, other.m_lpszClassName) == 0) return true;
        }
        return false;
    }
};

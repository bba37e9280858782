#pragma once
#include <type_traits>

/// How a platform service is put in another's place, for a test.
namespace platform {

/// While it lives, `service` answers in place of the one in force.
///     Replaced clock(replaceClock, myClock);
template <class Service>
class Replaced {
  public:
    Replaced(Service* (*replace)(Service*), std::type_identity_t<Service>& service)
        : m_replace(replace), m_before(replace(&service)) {}
    ~Replaced() { m_replace(m_before); }
    Replaced(const Replaced&) = delete;
    Replaced& operator=(const Replaced&) = delete;

  private:
    Service* (*m_replace)(Service*);
    Service* m_before;
};

/// The place that holds one service: the system's own, or what was put there.
template <class Service>
class ServicePlace {
  public:
    explicit ServicePlace(Service& system) : m_system(system) {}
    Service& inForce() { return m_replacement != nullptr ? *m_replacement : m_system; }
    Service* replace(Service* service) {
        Service* before = m_replacement;
        m_replacement = service;
        return before;
    }

  private:
    Service& m_system;
    Service* m_replacement = nullptr;
};

}  // namespace platform

#pragma once

/// \file
/// Whether static objects of a library go because it is unloaded, or because the process ends.

/// For destructors of static objects: false at the end of the process, when objects of the program may still be using
/// what the library has, and the system takes everything anyway. Each library, and each program, has its own answer.
bool library_is_unloading();

/// Frees an object that static storage points at, but only when the library is unloaded.
template <class OBJECT>
class FREED_WHEN_UNLOADING {
public:
    explicit FREED_WHEN_UNLOADING(const OBJECT* object) : m_object(object) {}
    ~FREED_WHEN_UNLOADING() {
        if (library_is_unloading()) {
            delete m_object;
        }
    }
    FREED_WHEN_UNLOADING(const FREED_WHEN_UNLOADING&) = delete;
    FREED_WHEN_UNLOADING& operator=(const FREED_WHEN_UNLOADING&) = delete;

private:
    const OBJECT* m_object;
};

/// The library's only object of that type, from its first use on. Destructors of static objects may use it, too.
template <class OBJECT>
OBJECT& lasting() {
    static auto* const object = new OBJECT;
    static const FREED_WHEN_UNLOADING<OBJECT> freed(object);
    return *object;
}

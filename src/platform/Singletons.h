#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace quillon::ustl {

// The one instance of T is a static: built on first use under the compiler's thread-safe guard, destroyed at process
// exit in the reverse order of construction.
template <class T>
class static_singleton {
public:
    static T& instance() {
        static T object;
        return object;
    }

protected:
    static_singleton() = default;
    ~static_singleton() = default;
};

// The one instance of T is a heap object, made on first use and deleted at process exit in the reverse order of
// construction: a T whose constructor touches another singleton dies before that one.
template <class T>
class dynamic_singleton {
public:
    static T& instance() {
        static const std::unique_ptr<T> kObject(new T);
        return *kObject;
    }

protected:
    dynamic_singleton() = default;
    ~dynamic_singleton() = default;
};

// The one T of its kind that is never destroyed: who asks for it while the process ends, as finalizers of scripts do,
// finds it alive. For a T that owns nothing, since nothing gives that back. `arguments` make it on first use.
template <class T, class... Arguments>
T& Immortal(Arguments&&... arguments) {
    alignas(T) static std::byte place[sizeof(T)];
    static T* const kObject = new (place) T(std::forward<Arguments>(arguments)...);
    return *kObject;
}

}  // namespace quillon::ustl

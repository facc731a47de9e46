#pragma once

#include <memory>

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
        static const std::unique_ptr<T> object(new T);
        return *object;
    }

protected:
    dynamic_singleton() = default;
    ~dynamic_singleton() = default;
};

}  // namespace quillon::ustl

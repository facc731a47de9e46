#include "StackThread.h"

#include <pthread.h>

#include "Ground.h"

namespace quillon::prove {

void RunOnThread(std::size_t stackBytes, const std::function<void()>& body) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, stackBytes);
    pthread_t thread;
    const auto run = [](void* data) -> void* {
        (*static_cast<const std::function<void()>*>(data))();
        return nullptr;
    };
    const int error = pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&body));
    pthread_attr_destroy(&attributes);
    Require(error == 0, "no thread");
    pthread_join(thread, nullptr);
}

}  // namespace quillon::prove

// SPDX-License-Identifier: MIT
// Threads that are used again. A world makes four for each input, and under AddressSanitizer a
// thread costs a tenth of a millisecond, which is as much as what it then does. Linked with
// -Wl,--wrap=pthread_create,--wrap=pthread_join.
#include <pthread.h>
#include <semaphore.h>

#include <memory>
#include <vector>

namespace {

struct Worker {
  void* (*routine)(void*) = nullptr;
  void* argument = nullptr;
  void* result = nullptr;
  sem_t begin = {};
  sem_t ended = {};
};

// Of the one thread that makes worlds.
std::vector<Worker*>& Idle() {
  static auto* const idle = new std::vector<Worker*>;
  return *idle;
}

void Await(sem_t* semaphore) {
  while (sem_wait(semaphore) != 0) {
  }
}

void* Work(void* argument) {
  auto* const self = static_cast<Worker*>(argument);
  for (;;) {
    Await(&self->begin);
    self->result = self->routine(self->argument);
    sem_post(&self->ended);
  }
}

}  // namespace

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                          void* (*routine)(void*), void* argument);

int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                          void* (*routine)(void*), void* argument) {
  if (Idle().empty()) {
    auto worker = std::make_unique<Worker>();
    sem_init(&worker->begin, 0, 0);
    sem_init(&worker->ended, 0, 0);
    pthread_t real = {};
    if (const int code = __real_pthread_create(&real, attributes, Work, worker.get())) return code;
    pthread_detach(real);
    Idle().push_back(worker.release());
  }
  Worker* const worker = Idle().back();
  Idle().pop_back();
  worker->routine = routine;
  worker->argument = argument;
  *thread = reinterpret_cast<pthread_t>(worker);
  sem_post(&worker->begin);
  return 0;
}

int __wrap_pthread_join(pthread_t thread, void** result) {
  auto* const worker = reinterpret_cast<Worker*>(thread);
  Await(&worker->ended);
  if (result != nullptr) *result = worker->result;
  Idle().push_back(worker);
  return 0;
}
// NOLINTEND(bugprone-reserved-identifier)

}  // extern "C"

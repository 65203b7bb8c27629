// A profiler's signal at 1 kHz, in threads that come and go while they compute by SVE, and whose handler computes by
// SVE too: all results are right, and so is what the handler finds.
//   profiled_threads [SECONDS]
#include <pthread.h>
#include <signal.h>
#include <stdatomic.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <ucontext.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

enum { THREADS = 4, NUMBERS = 400, TERM_MILLISECONDS = 100, LEAST_SAMPLES_A_SECOND = 5 };

static atomic_long samples, strange_samples, rounds, wrong_rounds, threads_run;
static atomic_bool stop[THREADS];

static uint32_t table[NUMBERS], weights[NUMBERS];
static uint16_t order[NUMBERS];
static double terms[NUMBERS];

#define KERNELS(suffix, kind)                                                           \
  static kind uint32_t gathered_sum##suffix(uint32_t first) {                           \
    uint32_t sum = 0;                                                                   \
    for (size_t i = 0; i < NUMBERS; ++i) sum += table[order[i]] * (weights[i] + first); \
    return sum;                                                                         \
  }                                                                                     \
  static kind double ordered_sum##suffix(uint32_t first) {                              \
    double sum = first;                                                                 \
    for (size_t i = 0; i < NUMBERS; ++i) sum += terms[i] / (1 + (double)first);         \
    return sum;                                                                         \
  }                                                                                     \
  static kind size_t chosen##suffix(uint32_t first, uint8_t* out) {                     \
    size_t count = 0;                                                                   \
    for (size_t i = 0; i < NUMBERS; ++i) {                                              \
      out[i] = (uint8_t)(table[i] % 251 > first % 251 ? table[i] >> 3 : 7);             \
      count += out[i] == 7;                                                             \
    }                                                                                   \
    return count;                                                                       \
  }
KERNELS(, VECTOR)
KERNELS(_scalar, SCALAR)
#undef KERNELS

// What a thread computes in its rounds, by their number, worked out beforehand without vectors.
enum { KINDS = 16 };
static struct outcome {
  uint32_t gathered;
  double ordered;
  size_t chosen;
  uint8_t bytes[NUMBERS];
} wanted[KINDS];

static void prepare(void) {
  for (uint32_t i = 0; i < NUMBERS; ++i) {
    table[i] = next_random();
    weights[i] = next_random() % 1000;
    order[i] = (uint16_t)(i * 7 % NUMBERS);
    terms[i] = (double)(next_random() % 4096) / 64;
  }
  for (uint32_t i = 0; i < KINDS; ++i) {
    wanted[i].gathered = gathered_sum_scalar(i);
    wanted[i].ordered = ordered_sum_scalar(i);
    wanted[i].chosen = chosen_scalar(i, wanted[i].bytes);
  }
}

static bool round_is_right(uint32_t kind) {
  const struct outcome* const judge = &wanted[kind];
  uint8_t bytes[NUMBERS];
  return gathered_sum(kind) == judge->gathered && ordered_sum(kind) == judge->ordered &&
         chosen(kind, bytes) == judge->chosen && memcmp(bytes, judge->bytes, sizeof bytes) == 0;
}

// The handler's own results, its registers, and where it finds the program: at an instruction.
static void sample(int signal, siginfo_t* info, void* context) {
  (void)info;
  const mcontext_t* const found = &((const ucontext_t*)context)->uc_mcontext;
  const uint32_t kind = (uint32_t)(++samples % KINDS);
  uint8_t bytes[NUMBERS];
  const bool right = signal == SIGPROF && found->pc % 4 == 0 && found->sp % 16 == 0 && vectors_work() &&
                     chosen(kind, bytes) == wanted[kind].chosen;
  if (!right) ++strange_samples;
}

static void* compute(void* argument) {
  sigset_t profiling;
  sigemptyset(&profiling);
  sigaddset(&profiling, SIGPROF);
  pthread_sigmask(SIG_UNBLOCK, &profiling, NULL);
  atomic_bool* const ended = argument;
  uint32_t kind = 0;
  do {
    if (!round_is_right(kind)) ++wrong_rounds;
    kind = (kind + 1) % KINDS;
    ++rounds;
  } while (!*ended);
  ++threads_run;
  return NULL;
}

// 1,000 signals a second to the process: the kernel chooses a thread that does not block them.
static void start_profiling(void) {
  const struct sigaction action = {.sa_sigaction = sample, .sa_flags = SA_SIGINFO | SA_RESTART};
  sigaction(SIGPROF, &action, NULL);
  sigset_t profiling;
  sigemptyset(&profiling);
  sigaddset(&profiling, SIGPROF);
  pthread_sigmask(SIG_BLOCK, &profiling, NULL);
  struct sigevent event = {.sigev_notify = SIGEV_SIGNAL, .sigev_signo = SIGPROF};
  timer_t timer;
  const struct itimerspec often = {.it_interval = {.tv_nsec = 1000000}, .it_value = {.tv_nsec = 1000000}};
  if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 || timer_settime(timer, 0, &often, NULL) != 0) abort();
}

static double now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (double)time.tv_sec + (double)time.tv_nsec * 1e-9;
}

int main(int count, char** arguments) {
  const double seconds = count > 1 ? atof(arguments[1]) : 1;
  prepare();
  start_profiling();
  pthread_t threads[THREADS];
  for (int i = 0; i < THREADS; ++i) pthread_create(&threads[i], NULL, compute, &stop[i]);
  int next = 0;
  for (const double begin = now(); now() < begin + seconds; next = (next + 1) % THREADS) {
    usleep(TERM_MILLISECONDS * 1000);
    stop[next] = true;
    pthread_join(threads[next], NULL);
    stop[next] = false;
    pthread_create(&threads[next], NULL, compute, &stop[next]);
  }
  for (int i = 0; i < THREADS; ++i) stop[i] = true;
  for (int i = 0; i < THREADS; ++i) pthread_join(threads[i], NULL);
  fprintf(stderr, "%ld rounds of %ld threads, %ld of them wrong; %ld samples, %ld of them strange\n", rounds,
          threads_run, wrong_rounds, samples, strange_samples);
  check("results", rounds >= THREADS && wrong_rounds == 0);
  check("samples", samples >= (long)(seconds * LEAST_SAMPLES_A_SECOND) && strange_samples == 0);
  return finish("profiled_threads");
}

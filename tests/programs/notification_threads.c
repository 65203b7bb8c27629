// SVE code in the threads that the C library starts to notify: of a timer, a message, a read, a name that was looked
// up. Some of them begin with all signals blocked.
#include <aio.h>
#include <errno.h>
#include <fcntl.h>
#include <mqueue.h>
#include <netdb.h>
#include <pthread.h>
#include <signal.h>
#include <stdatomic.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

enum { WAITING, WORKS, WRONG };
static atomic_int outcome;

static void notified(union sigval value) { outcome = vectors_work() && value.sival_int == 41 ? WORKS : WRONG; }

// A notification by a thread, with attributes of its own or without.
static struct sigevent by_thread(pthread_attr_t* attributes) {
  outcome = WAITING;
  return (struct sigevent){.sigev_notify = SIGEV_THREAD,
                           .sigev_value.sival_int = 41,
                           .sigev_notify_function = notified,
                           .sigev_notify_attributes = attributes};
}

static bool notification_works(void) {
  for (int i = 0; i < 2000 && outcome == WAITING; ++i) usleep(5000);
  return outcome == WORKS;
}

static bool timer_works(pthread_attr_t* attributes) {
  struct sigevent event = by_thread(attributes);
  const struct itimerspec soon = {.it_value.tv_nsec = 1000000};
  timer_t timer;
  if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 || timer_settime(timer, 0, &soon, NULL) != 0) return false;
  return notification_works() && timer_delete(timer) == 0;
}

// Not every system has message queues and threads to tell of them: qemu's user mode has none.
static bool message_works(pthread_attr_t* attributes) {
  struct mq_attr sizes = {.mq_maxmsg = 1, .mq_msgsize = 16};
  const mqd_t queue = mq_open("/quern_notification", O_RDWR | O_CREAT, 0600, &sizes);
  if (queue == (mqd_t)-1) return true;
  mq_unlink("/quern_notification");
  const struct sigevent event = by_thread(attributes);
  if (mq_notify(queue, &event) != 0 && errno != EBADF) return true;
  return mq_send(queue, "x", 1, 0) == 0 && notification_works() && mq_close(queue) == 0;
}

static bool read_works(void) {
  char byte;
  const int zeros = open("/dev/zero", O_RDONLY);
  struct aiocb request = {.aio_fildes = zeros, .aio_buf = &byte, .aio_nbytes = 1, .aio_sigevent = by_thread(NULL)};
  return aio_read(&request) == 0 && notification_works() && close(zeros) == 0;
}

static bool look_up_works(void) {
  struct gaicb request = {.ar_name = "127.0.0.1"}, *requests[] = {&request};
  struct sigevent event = by_thread(NULL);
  return getaddrinfo_a(GAI_NOWAIT, requests, 1, &event) == 0 && notification_works();
}

int main(void) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 1 << 20);
  check("a timer", timer_works(NULL));
  check("a timer whose thread has attributes", timer_works(&attributes));
  check("a message", message_works(NULL));
  check("a message for a thread with attributes", message_works(&attributes));
  check("a read", read_works());
  check("a look-up", look_up_works());
  return finish("notification_threads");
}

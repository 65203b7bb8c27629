// Bodies that attract each other: square roots and quotients (FSQRT, FDIV) and sums over all bodies (FADDA, or FMLA and
// FADDV with -ffast-math), for as many steps as make small differences grow.
#include "floating_point.h"

enum { BODIES = 45, STEPS = 8 };

#define NUMBERS(number)                                                \
  struct number##_bodies {                                             \
    number x[BODIES], y[BODIES], vx[BODIES], vy[BODIES], mass[BODIES]; \
  }
NUMBERS(float);
NUMBERS(double);
#undef NUMBERS

// One step of length `time`. No two bodies come nearer than the constant under the root.
#define STEP(name, kind, number, root)                                                                \
  static kind void name(struct number##_bodies* out, const struct number##_bodies* in, number time) { \
    for (size_t i = 0; i < BODIES; ++i) {                                                             \
      number ax = 0, ay = 0;                                                                          \
      for (size_t j = 0; j < BODIES; ++j) {                                                           \
        const number dx = in->x[j] - in->x[i], dy = in->y[j] - in->y[i];                              \
        const number square = dx * dx + dy * dy + (number)0.01;                                       \
        const number pull = in->mass[j] / (square * root(square));                                    \
        ax += dx * pull;                                                                              \
        ay += dy * pull;                                                                              \
      }                                                                                               \
      out->vx[i] = in->vx[i] + ax * time;                                                             \
      out->vy[i] = in->vy[i] + ay * time;                                                             \
      out->x[i] = in->x[i] + out->vx[i] * time;                                                       \
      out->y[i] = in->y[i] + out->vy[i] * time;                                                       \
      out->mass[i] = in->mass[i];                                                                     \
    }                                                                                                 \
  }
STEP(step_single, VECTOR, float, __builtin_sqrtf)
STEP(step_single_scalar, SCALAR, float, __builtin_sqrtf)
STEP(step_double, VECTOR, double, __builtin_sqrt)
STEP(step_double_scalar, SCALAR, double, __builtin_sqrt)
#undef STEP

static struct float_bodies single_now, single_next, single_judged;
static struct double_bodies double_now, double_next, double_judged;
enum { NUMBERS = 5 * BODIES };

int main(void) {
  fill_numbers(&single_now, 4, NUMBERS, -1, 1);
  fill_numbers(&double_now, 8, NUMBERS, -1, 1);
  fill_numbers(single_now.mass, 4, BODIES, 0.01, 0.1);
  fill_numbers(double_now.mass, 8, BODIES, 0.01, 0.1);
  for (int step = 0; step < STEPS; ++step) {
    float *single_out = single_next.x, *single_judge = single_judged.x;
    double *double_out = double_next.x, *double_judge = double_judged.x;
    take_status();
    step_single(&single_next, &single_now, 0.03f);
    const uint32_t single_status = take_status();
    step_single_scalar(&single_judged, &single_now, 0.03f);
    compare_results("step_single", true, 4, NUMBERS, single_out, single_status, single_judge, take_status());
    step_double(&double_next, &double_now, 0.03);
    const uint32_t double_status = take_status();
    step_double_scalar(&double_judged, &double_now, 0.03);
    compare_results("step_double", true, 8, NUMBERS, double_out, double_status, double_judge, take_status());
    single_now = single_next;
    double_now = double_next;
  }
  return finish("n_body");
}

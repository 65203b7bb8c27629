// The same loop over an array of structures and over arrays of their members: the potential energy of particles. Each
// is a region of interest of its own, so that one trace shows what either layout costs.
#include <stddef.h>
#include <stdio.h>

#include <quern/roi.h>

enum { PARTICLES = 2500, PASSES = 4 };

struct particle {
  float x, height, z, mass;
};

static struct particle together[PARTICLES];
static float height[PARTICLES], mass[PARTICLES], energy[PARTICLES];

__attribute__((noinline)) static void energy_together(float* restrict out, const struct particle* restrict particles) {
  for (size_t i = 0; i < PARTICLES; ++i) out[i] = 10 * particles[i].mass * particles[i].height;
}

__attribute__((noinline)) static void energy_apart(float* restrict out, const float* restrict masses,
                                                   const float* restrict heights) {
  for (size_t i = 0; i < PARTICLES; ++i) out[i] = 10 * masses[i] * heights[i];
}

static size_t count_wrong(void) {
  size_t wrong = 0;
  for (size_t i = 0; i < PARTICLES; ++i) wrong += energy[i] != 10 * (float)(i % 10) * (float)(i % 100);
  return wrong;
}

int main(void) {
  for (size_t i = 0; i < PARTICLES; ++i) {
    together[i].mass = mass[i] = (float)(i % 10);
    together[i].height = height[i] = (float)(i % 100);
  }
  quern_roi_begin();  // region 1
  for (int pass = 0; pass < PASSES; ++pass) energy_together(energy, together);
  quern_roi_end();
  const size_t wrong_together = count_wrong();

  quern_roi_begin();  // region 2
  for (int pass = 0; pass < PASSES; ++pass) energy_apart(energy, mass, height);
  quern_roi_end();
  const size_t wrong_apart = count_wrong();

  printf("energy of %d particles: %zu wrong together, %zu wrong apart\n", PARTICLES, wrong_together, wrong_apart);
  return wrong_together + wrong_apart != 0;
}

/* SPDX-License-Identifier: MIT */
/*
 * measure RUNS COMMAND [ARG...] [-- COMMAND [ARG...]]...
 *
 * Runs the commands in turn, RUNS times each, with standard output to /dev/null, and prints a line for each: the
 * smallest and the median wall time in microseconds, the smallest processor time in microseconds, and the largest
 * resident size in KiB. Taking turns lets what else the machine does hit all of them alike.
 */
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

enum { MOST_COMMANDS = 32 };

struct command {
  char **argv;
  double *wall;
  double least_cpu;
  long largest_size;
};

static double now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (double)time.tv_sec * 1e6 + (double)time.tv_nsec / 1e3;
}

static double microseconds(struct timeval time) { return (double)time.tv_sec * 1e6 + (double)time.tv_usec; }

static int compare(const void *one, const void *other) {
  const double a = *(const double *)one, b = *(const double *)other;
  return (a > b) - (a < b);
}

static void run_once(struct command *command, int run) {
  struct rusage usage;
  int status = 0;
  const double start = now();
  const pid_t child = vfork();
  if (child == 0) {
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, 1);
    execv(command->argv[0], command->argv);
    _exit(127);
  }
  wait4(child, &status, 0, &usage);
  command->wall[run] = now() - start;
  if (status != 0) {
    fprintf(stderr, "%s: status %d\n", command->argv[0], status);
    exit(1);
  }
  const double cpu = microseconds(usage.ru_utime) + microseconds(usage.ru_stime);
  if (run == 0 || cpu < command->least_cpu) command->least_cpu = cpu;
  if (usage.ru_maxrss > command->largest_size) command->largest_size = usage.ru_maxrss;
}

int main(int argc, char **argv) {
  struct command commands[MOST_COMMANDS] = {0};
  int count = 0;
  const int runs = argc > 2 ? atoi(argv[1]) : 0;
  if (runs < 1) return 2;
  for (int index = 2; index < argc && count < MOST_COMMANDS; ++index) {
    if (index == 2 || strcmp(argv[index - 1], "--") == 0) {
      commands[count].argv = argv + index;
      commands[count++].wall = malloc(sizeof(double) * (size_t)runs);
    }
  }
  for (int index = 2; index < argc; ++index) {
    if (strcmp(argv[index], "--") == 0) argv[index] = NULL;
  }
  for (int run = 0; run < runs; ++run) {
    for (int index = 0; index < count; ++index) run_once(&commands[index], run);
  }
  for (int index = 0; index < count; ++index) {
    struct command *command = &commands[index];
    qsort(command->wall, (size_t)runs, sizeof(double), compare);
    printf("%.1f %.1f %.1f %ld\n", command->wall[0], command->wall[runs / 2], command->least_cpu,
           command->largest_size);
  }
  return 0;
}

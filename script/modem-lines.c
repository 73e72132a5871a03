/* Preloaded into Wine by hand (docs/windows.md): a pseudo-terminal as a port. Linux refuses a pseudo-terminal's counters
   and modem lines, by which Wine waits for received bytes and opens a port at all. Here the counter of received bytes
   goes up as long as there are some, the device's lines are on, and the port's own are kept. MODEM_LINES names a file
   that gets a line whenever RTS changes. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <linux/serial.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

static int kept = TIOCM_RTS | TIOCM_DTR;

static int received(int port, int (*system)(int, unsigned long, ...), struct serial_icounter_struct *counters) {
  static int count;
  int waiting = 0;
  if (system(port, FIONREAD, &waiting) == 0 && waiting > 0) ++count;
  *counters = (struct serial_icounter_struct){.rx = count};
  return 0;
}

static int keep(int lines) {
  const char *name = getenv("MODEM_LINES");
  FILE *file = name && ((kept ^ lines) & TIOCM_RTS) ? fopen(name, "a") : NULL;
  struct timespec now;
  kept = lines;
  if (!file) return 0;
  clock_gettime(CLOCK_MONOTONIC, &now);
  fprintf(file, "%ld.%06ld RTS %s\n", (long)now.tv_sec, now.tv_nsec / 1000, lines & TIOCM_RTS ? "on" : "off");
  return fclose(file);
}

int ioctl(int port, unsigned long request, ...) {
  static int (*system)(int, unsigned long, ...);
  if (!system) system = (int (*)(int, unsigned long, ...))dlsym(RTLD_NEXT, "ioctl");
  va_list rest;
  va_start(rest, request);
  void *at = va_arg(rest, void *);
  va_end(rest);
  int result = system(port, request, at);
  if (result == 0 || !isatty(port)) return result;
  switch (request) {
    case TIOCGICOUNT: return received(port, system, at);
    case TIOCMGET: return *(int *)at = kept | TIOCM_CTS | TIOCM_DSR | TIOCM_CAR, 0;
    case TIOCMSET: return keep(*(int *)at);
    case TIOCMBIS: return keep(kept | *(int *)at);
    case TIOCMBIC: return keep(kept & ~*(int *)at);
    default: return result;
  }
}

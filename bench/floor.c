/* SPDX-License-Identifier: MIT */
/* The least that a program can do that reads a PPD with the CUPS file interface and writes it back. */
#include <cups/file.h>
#include <stdio.h>

int main(int argc, char **argv) {
  char buffer[256];
  size_t size;
  cups_file_t *file = argc > 1 ? cupsFileOpen(argv[1], "r") : NULL;
  if (file == NULL) return 1;
  while ((size = cupsFileGetLine(file, buffer, sizeof buffer)) > 0) fwrite(buffer, 1, size, stdout);
  cupsFileClose(file);
  return fclose(stdout) == 0 ? 0 : 1;
}

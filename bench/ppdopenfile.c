/* SPDX-License-Identifier: MIT */
/* Opens a PPD with libcups' own PPD reader. */
#include <cups/ppd.h>

int main(int argc, char **argv) {
  ppd_file_t *ppd = argc > 1 ? ppdOpenFile(argv[1]) : NULL;
  if (ppd == NULL) return 1;
  ppdClose(ppd);
  return 0;
}

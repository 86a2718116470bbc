/* A plain C program that loads the library the way the desktop front end does: dlopen, look
 * the export up by its undecorated name, call it with a byte count and a path. */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "gaengine.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: %s LIBRARY EXAMPLES_DIR\n", argv[0]);
    return 2;
  }
  void* lib = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (lib == NULL) {
    fprintf(stderr, "dlopen: %s\n", dlerror());
    return 1;
  }
  /* The declaration in the header gives the pointer its exact type. */
  __typeof__(&MAPFindNumMarkers) find;
  *(void**)(&find) = dlsym(lib, "MAPFindNumMarkers");
  if (find == NULL) {
    fprintf(stderr, "dlsym: %s\n", dlerror());
    return 1;
  }

  char path[4096];
  snprintf(path, sizeof path, "%s/f2_five_chromosomes.map", argv[2]);
  int num_markers = -1, status = -1;
  find((int)strlen(path), path, &num_markers, &status);
  if (status != 0 || num_markers != 150) {
    fprintf(stderr, "MAPFindNumMarkers: status %d, markers %d\n", status, num_markers);
    return 1;
  }

  /* A failure comes back as a catalogued code, and the log tells why. */
  const char* missing = "no-such-file.map";
  find((int)strlen(missing), missing, &num_markers, &status);
  if (status != 1002) {
    fprintf(stderr, "missing file: status %d\n", status);
    return 1;
  }
  FILE* log = fopen("MAP.log", "r");
  if (log == NULL) {
    fprintf(stderr, "no MAP.log in the current folder\n");
    return 1;
  }
  fclose(log);
  dlclose(lib);
  printf("C client: 150 markers, missing file gives 1002\n");
  return 0;
}

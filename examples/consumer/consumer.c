/* A small host program: stores a number in an environment, writes the environment to a
 * file, reads the file back into a second environment and takes the number out again;
 * then rounds it and walks a string with a delimiter. Nothing reaches zv.err when nothing
 * goes wrong. */
#include <tivlib/tivlib.h>

#include <stdio.h>
#include <string.h>

int main(void) {
  char text[64];
  char list[] = "alpha, beta, , gamma";
  char *token;
  int tokens = 0;
  double height = 0.0;
  int32_t id;
  env_handle *saved = env_open(0, NULL);
  env_handle *loaded = env_open(0, NULL);

  if (saved == NULL || loaded == NULL) {
    fprintf(stderr, "consumer: env_open failed\n");
    return 1;
  }
  env_put_double(saved, "Wall", "height", 2.754);
  env_write_file("consumer.env", saved);
  if (env_read_file("consumer.env", loaded) != 0) {
    fprintf(stderr, "consumer: consumer.env does not read back\n");
    return 1;
  }
  id = env_get_double(loaded, "Wall", "height", 1, &height);
  env_close(saved, 0);
  env_close(loaded, 0);
  remove("consumer.env");

  convert_dtos(pround(height, -2), 0, 2, text);
  printf("Wall height (id %d) rounded: %s\n", (int)id, text);

  for (token = str_tok(list, ", "); token != NULL; token = str_tok(NULL, ", ")) {
    printf("token %d: %s\n", ++tokens, token);
  }
  if (id < 0 || tokens != 3 || strcmp(text, "2.75") != 0) {
    fprintf(stderr, "consumer: unexpected result\n");
    return 1;
  }
  printf("consumer: ok\n");
  return 0;
}

/* A small host program: formats and rounds numbers, walks a string with a delimiter, and
 * shows that nothing reaches zv.err when nothing goes wrong. */
#include <tivlib/tivlib.h>

#include <stdio.h>
#include <string.h>

int main(void) {
  char text[64];
  char list[] = "alpha, beta, , gamma";
  char *token;
  int tokens = 0;

  convert_dtos(pround(3.14159, -2), 0, 2, text);
  printf("pround(3.14159, -2) = %s\n", text);

  for (token = str_tok(list, ", "); token != NULL; token = str_tok(NULL, ", ")) {
    printf("token %d: %s\n", ++tokens, token);
  }
  if (tokens != 3 || strcmp(text, "3.14") != 0) {
    fprintf(stderr, "consumer: unexpected result\n");
    return 1;
  }
  printf("consumer: ok\n");
  return 0;
}

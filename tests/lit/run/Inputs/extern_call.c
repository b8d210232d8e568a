/* Calls a function that neither the file nor the interpreter's library defines. */
int frobnicate(int);
int main(void) { return frobnicate(1); }

// ondrel-run: runs `main` of a whole program held in one intermediate file.
int run_main(int argc, char** argv);

int main(int argc, char** argv) { return run_main(argc, argv); }

int optimizer_main(int argc, char** argv);

int main(int argc, char** argv) { return optimizer_main(argc, argv); }

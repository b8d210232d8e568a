int dump_main(int argc, char** argv);

int main(int argc, char** argv) { return dump_main(argc, argv); }

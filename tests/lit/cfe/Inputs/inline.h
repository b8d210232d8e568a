static int from_header(int x) {
    x += 1;
    return x;
}

int value = VALUE;

#define FROM_HEADER 7

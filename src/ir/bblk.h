// Basic blocks and statement lists.
#pragma once

#include <cstdint>

struct NODE;
struct PSN;
struct LOOP;
struct FUNINFO;

// A statement cell.
struct LIST {
    NODE* tree;
    PSN* psn;
    int16_t a;
    int16_t b;
    LIST* next;
};

struct BBLK {
    BBLK* next = nullptr;
    BBLK* prev = nullptr;
    BBLK* next_created = nullptr;
    LIST* statements = nullptr;
    LOOP* loop = nullptr;
    int uon = -1;
    int dfn = 0;
};

#include "driver/driver.h"

#include "driver/options.h"
#include "ifile/ifile.h"

SYMTAB* currfunc;
FUNINFO* currfuninfo;
std::list<SYMTAB*> functions;
std::map<SYMTAB*, std::list<pass*>> steps_table;
bool function_prepass;
int user_error_count;
FILEINFO fileinfo;

FILE* fdebug;
FILE* finfo;
int print_debug;
int write_opt_info;

I_FILE* i_file;
I_FILE* o_file;

char i_file_name[2048];
char o_file_name[2048];
char bug_file_name[2048];

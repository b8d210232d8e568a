// The step list and the switch table.
#pragma once

#include <string>
#include <vector>

class pass_manager;

// An object numbered by its owner at construction: the owner's size then.
template <class T, class OWNER> class serial_object {
public:
    explicit serial_object(OWNER* owner);
    virtual ~serial_object() = default;
    int serial() const { return serial_; }
    OWNER* manager() const { return manager_; }

private:
    int serial_;
    OWNER* manager_;
};

class pass : public serial_object<pass, pass_manager> {
public:
    pass(std::string name, void (*fn)());
    ~pass() override = default;
    virtual bool is_barrier() const { return false; }
    void run();

    std::string name;
    void (*callback)();
};

class barrier_pass : public pass {
public:
    using pass::pass;
    bool is_barrier() const override { return true; }
};

class pass_manager {
public:
    std::vector<pass*> passes;
    int size() const { return static_cast<int>(passes.size()); }
};

template <class T, class OWNER>
serial_object<T, OWNER>::serial_object(OWNER* owner) : serial_(owner->size()), manager_(owner) {}

extern pass_manager global_pass_manager;
// The ordered steps of a run, copied to each function's list by main.
extern std::vector<pass*> step_list;

void build_step_list();
void add_dd_normal_order_passes(std::vector<pass*>& steps);

// The switch table.
int pass_debug(const char* name);
int pass_enable(const char* name);
bool pass_disable(const char* name);
void process_debug_option(const char* kind, const char* spec);

// A named switch of the catalogue; reading it looks the switch table up.
class register_option {
public:
    explicit register_option(const char* name);
    operator int() const;
    explicit operator bool() const;
    register_option& operator=(int value);
    static bool is_registered(const char* name);
    void dump() const {}

    static char** options;
    static int num;

private:
    const char* name_;
};

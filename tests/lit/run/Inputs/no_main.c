int helper(int x) { return x + 1; }

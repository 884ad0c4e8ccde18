#pragma once
// Joins the test's gateway threads when the test leaves its scope, also when a
// check fails early (an unjoined std::thread would terminate the process).

#include <thread>
#include <vector>

struct ThreadJoiner {
    std::vector<std::thread> &threads;
    ~ThreadJoiner()
    {
        for (std::thread &t : threads)
            if (t.joinable())
                t.join();
    }
};

target_sources(lexarbor-tests-core PRIVATE
    command_test.cpp
    interaction_test.cpp
    lookups_filters_test.cpp
    process_test.cpp
    signal_label_test.cpp
)

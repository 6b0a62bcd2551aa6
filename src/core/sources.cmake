target_sources(lexarbor_core PRIVATE
    app_folders.h
    command.cpp
    command.h
    file_steps.cpp
    file_steps.h
    interaction.cpp
    interaction.h
    filters.cpp
    filters.h
    process.cpp
    process.h
    program.h
    signal_label.cpp
    signal_label.h
)

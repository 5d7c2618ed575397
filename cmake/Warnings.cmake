# Every target of the project is built with these; a warning is an error.
add_compile_options(-Wall -Wextra -Wconversion -Wshadow -Werror)

# fish completion for varnoth-cli.

set -l commands make info check extract edit preview thumbnail
set -l pictures .png .apng .bmp .dib .gif .icb .jfif .jpe .jpeg .jpg .pcx .tga .tif .tiff .vda .vst .webp .pbm .pgm \
    .ppm .xbm .xpm .ico .svg .svgz

# Whether no sprite has been named yet.
function __varnoth_cli_first_file
    not string match -qr '\.spr$|^-$' -- (commandline -opc)
end

complete -c varnoth-cli -f
complete -c varnoth-cli -n "not __fish_seen_subcommand_from $commands" -s h -l help -d 'Print help and exit'
complete -c varnoth-cli -n "not __fish_seen_subcommand_from $commands" -l version -d 'Print the version and exit'
complete -c varnoth-cli -n "not __fish_seen_subcommand_from $commands" -a make -d 'Make a sprite from pictures'
complete -c varnoth-cli -n "not __fish_seen_subcommand_from $commands" -a info -d 'Print the facts of sprites'
complete -c varnoth-cli -n "not __fish_seen_subcommand_from $commands" -a check -d 'List what is wrong with sprites'
complete -c varnoth-cli -n "not __fish_seen_subcommand_from $commands" -a extract -d 'Write frames as pictures'
complete -c varnoth-cli -n "not __fish_seen_subcommand_from $commands" -a edit -d 'Change a sprite'
complete -c varnoth-cli -n "not __fish_seen_subcommand_from $commands" -a preview -d 'Show a sprite'
complete -c varnoth-cli -n "not __fish_seen_subcommand_from $commands" -a thumbnail -d 'Write a small PNG'

# Options of several subcommands.
complete -c varnoth-cli -n '__fish_seen_subcommand_from make info check extract edit preview thumbnail' -s h -l help -d 'Print help and exit'
complete -c varnoth-cli -n '__fish_seen_subcommand_from info check' -l json -d 'Print one JSON object per line and file'
complete -c varnoth-cli -n '__fish_seen_subcommand_from check extract preview' -s q -l quiet -d 'Print less'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make edit' -s q -l quiet -d 'Show no progress bar'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make extract edit preview thumbnail' -l force -d 'Replace an existing file'

# Options of make and edit.
complete -c varnoth-cli -n '__fish_seen_subcommand_from make edit' -l fit -x -a 'stretch contain crop' -d 'How pictures of another size become frames'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make edit' -l transparent -x -a 'alpha corner none' -d 'What makes a pixel transparent'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make edit' -l dither -x -a 'none ordered floyd-steinberg blue-noise' -d 'How missing colours are approximated'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make edit' -l dither-strength -x -d 'In percent'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make edit' -l jobs -x -d 'Number of threads'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make edit' -l type -x -a 'VP_PARALLEL_UPRIGHT FACING_UPRIGHT VP_PARALLEL ORIENTED VP_PARALLEL_ORIENTED' -d 'Orientation'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make edit' -l mode -x -a 'NORMAL ADDITIVE INDEXALPHA ALPHATEST' -d 'Render mode'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make edit' -l sync -x -a 'synchronized random' -d 'Whether all sprites show the same frame'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make edit' -l origin -x -a center -d 'Top left corner of the frames'

complete -c varnoth-cli -n '__fish_seen_subcommand_from make' -l size -x -d 'Size of the frames, WxH'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make' -l colors -x -d 'Most colours in the palette'
complete -c varnoth-cli -n '__fish_seen_subcommand_from make' -l color -x -d 'Colour of an INDEXALPHA sprite'
complete -c varnoth-cli -k -n '__fish_seen_subcommand_from make' -l palette -x -a "best editor (__fish_complete_suffix .spr .pal .gpl .act $pictures)" -d 'New, as the editor, or of a file'
complete -c varnoth-cli -k -n '__fish_seen_subcommand_from make; and __varnoth_cli_first_file' -a '(__fish_complete_suffix .spr)'
complete -c varnoth-cli -k -n '__fish_seen_subcommand_from make; and not __varnoth_cli_first_file' -a "(__fish_complete_suffix $pictures)"

complete -c varnoth-cli -k -n '__fish_seen_subcommand_from info check' -a '(__fish_complete_suffix .spr)'

complete -c varnoth-cli -n '__fish_seen_subcommand_from extract' -l format -x -a 'bmp gif pcx png tga' -d 'Format of the pictures'
complete -c varnoth-cli -n '__fish_seen_subcommand_from extract' -l frames -x -d 'Only these frames, such as 0-3,7'
complete -c varnoth-cli -n '__fish_seen_subcommand_from extract' -l alpha -d 'Write alpha as the render mode means it'
complete -c varnoth-cli -k -n '__fish_seen_subcommand_from extract; and __varnoth_cli_first_file' -a '(__fish_complete_suffix .spr)'
complete -c varnoth-cli -n '__fish_seen_subcommand_from extract; and not __varnoth_cli_first_file' -a '(__fish_complete_directories)'

complete -c varnoth-cli -k -n '__fish_seen_subcommand_from edit' -s o -l output -x -a '(__fish_complete_suffix .spr)' -d 'Write this file'
complete -c varnoth-cli -n '__fish_seen_subcommand_from edit' -l remove -x -d 'Remove frames, such as 0-3,7'
complete -c varnoth-cli -n '__fish_seen_subcommand_from edit' -l move -x -d 'Move a frame, FROM=TO'
complete -c varnoth-cli -n '__fish_seen_subcommand_from edit' -l order -x -d 'Put the frames into this order'
complete -c varnoth-cli -n '__fish_seen_subcommand_from edit' -l reverse -d 'Reverse the order of the frames'
complete -c varnoth-cli -k -n '__fish_seen_subcommand_from edit' -l append -x -a "(__fish_complete_suffix $pictures)" -d 'Add pictures at the end'
complete -c varnoth-cli -n '__fish_seen_subcommand_from edit' -l repalette -d 'Make a new palette'
complete -c varnoth-cli -n '__fish_seen_subcommand_from edit' -l replace -x -d 'Replace a frame, N=PICTURE'
complete -c varnoth-cli -k -n '__fish_seen_subcommand_from edit; and __varnoth_cli_first_file' -a '(__fish_complete_suffix .spr)'

complete -c varnoth-cli -n '__fish_seen_subcommand_from preview' -l fps -x -d 'Frames per second'
complete -c varnoth-cli -n '__fish_seen_subcommand_from preview' -l scale -x -d 'Magnify every pixel, 1 to 64 times'
complete -c varnoth-cli -n '__fish_seen_subcommand_from preview' -l background -x -a checkers -d '#RRGGBB or checkers'
complete -c varnoth-cli -k -n '__fish_seen_subcommand_from preview; and __varnoth_cli_first_file' -a '(__fish_complete_suffix .spr)'
complete -c varnoth-cli -k -n '__fish_seen_subcommand_from preview; and not __varnoth_cli_first_file' -a '(__fish_complete_suffix .gif .png)'

complete -c varnoth-cli -k -n '__fish_seen_subcommand_from thumbnail; and __varnoth_cli_first_file' -a '(__fish_complete_suffix .spr)'
complete -c varnoth-cli -k -n '__fish_seen_subcommand_from thumbnail; and not __varnoth_cli_first_file' -a '(__fish_complete_suffix .png)'
